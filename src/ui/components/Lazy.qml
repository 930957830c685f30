import QtQuick

/**
 * Makes its content only while it is wanted. A Loader would do, but the one of Qt 6.4 makes no component of a file
 * with bound components. The content fills this item, which has its implicit size.
 */
FocusScope {
    id: root

    property bool active: true
    property Component sourceComponent: null
    property Item item: null

    signal loaded

    implicitWidth: item?.implicitWidth ?? 0
    implicitHeight: item?.implicitHeight ?? 0
    onActiveChanged: fill()
    Component.onCompleted: fill()

    function fill() {
        if (active === (item !== null) || !sourceComponent)
            return;
        if (active) {
            const made = sourceComponent.createObject(root) as Item;
            made.anchors.fill = root;
            item = made;
            loaded();
        } else {
            const gone = item;
            item = null;
            gone.parent = null;
            gone.destroy();
        }
    }
}
