pragma ComponentBehavior: Bound

import QtQuick

/** A hint that costs nothing until the pointer asks for it. */
Lazy {
    id: root

    property bool shown: false
    property string text: ""

    anchors.fill: parent
    active: shown && text !== ""
    sourceComponent: Item {
        AppToolTip {
            visible: true
            text: root.text
        }
    }
}
