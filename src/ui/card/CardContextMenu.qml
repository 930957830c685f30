pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/**
 * The menu of a card, as the view model made it. It is for one opening: what is chosen is done when the menu is gone
 * and the keyboard is back on the card, for it may open something beside that card.
 */
AppMenu {
    id: root

    required property TaskContextMenu contextMenu

    property int chosen: -1
    /** Where the keyboard begins. */
    readonly property int firstIndex: itemAt(0) instanceof MenuHeading ? 1 : 0

    objectName: "contextMenu"
    title: contextMenu.title
    onClosed: {
        contextMenu.trigger(chosen);
        destroy();
    }
    Component.onCompleted: fill(root, contextMenu.entries)

    function fill(menu: AppMenu, entries: var) {
        for (const entry of entries) {
            if (entry.isSeparator)
                menu.addItem(separator.createObject(menu.contentItem));
            else if (entry.isHeading)
                menu.addItem(heading.createObject(menu.contentItem, {text: entry.title}));
            else if (entry.children.length > 0)
                menu.addMenu(filled(submenu.createObject(menu, {title: entry.title, symbol: entry.symbol}), entry));
            else
                menu.addItem(item.createObject(menu.contentItem, {entry: entry}));
        }
    }

    function filled(menu: AppMenu, entry: var): AppMenu {
        fill(menu, entry.children);
        menu.enabled = entry.isEnabled;
        return menu;
    }

    Component {
        id: item

        AppMenuItem {
            required property var entry

            text: entry.title
            symbol: entry.symbol
            keys: entry.keys
            enabled: entry.isEnabled
            checkable: entry.isChecked
            checked: entry.isChecked
            Accessible.description: entry.help
            onTriggered: root.chosen = entry.number
        }
    }
    Component {
        id: heading

        MenuHeading {}
    }
    Component {
        id: separator

        MenuLine {}
    }
    Component {
        id: submenu

        AppMenu {}
    }
}
