import QtQuick

/**
 * Makes its content only while it is wanted. A Loader would do, but the one of Qt 6.4 makes no component of a file
 * with bound components. The content fills this item, which has its implicit size.
 */
FocusScope {
    id: root

    property bool active: true
    property Component sourceComponent: null
    readonly property Item item: repeater.count > 0 ? repeater.itemAt(0) : null

    signal loaded

    implicitWidth: item?.implicitWidth ?? 0
    implicitHeight: item?.implicitHeight ?? 0
    onItemChanged: {
        if (!item)
            return;
        item.anchors.fill = root;
        loaded();
    }

    Repeater {
        id: repeater
        model: root.active && root.sourceComponent ? 1 : null
        delegate: root.sourceComponent
    }
}
