pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Every command there is, by group, with its key. */
AppMenu {
    id: root

    required property Commands commands

    hasSymbols: false
    title: qsTr("All commands")

    Instantiator {
        model: root.commands.menus

        delegate: AppMenu {
            id: group

            required property var modelData

            title: modelData.title

            Instantiator {
                model: group.modelData.commands

                delegate: AppMenuItem {
                    required property Command modelData

                    text: modelData.title
                    keys: modelData.keys
                    symbol: modelData.symbol
                    enabled: modelData.enabled
                    onTriggered: modelData.trigger()
                }
                onObjectAdded: (index, object) => group.insertItem(index, object)
                onObjectRemoved: (index, object) => group.removeItem(object)
            }
        }
        onObjectAdded: (index, object) => root.insertMenu(index, object)
        onObjectRemoved: (index, object) => root.removeMenu(object)
    }
}
