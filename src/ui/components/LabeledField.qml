import QtQuick

/** A field of a form under its name, with perhaps a note below. */
Column {
    id: root

    property string text: ""
    property string note: ""
    default property alias content: holder.data

    width: parent?.width ?? 0
    spacing: 5

    ThemedText {
        width: parent.width
        text: root.text
        color: Theme.secondaryText
        font.pixelSize: Theme.small
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Item {
        id: holder
        width: parent.width
        height: childrenRect.height
    }
    ThemedText {
        width: parent.width
        visible: root.note !== ""
        text: root.note
        color: Theme.amberText
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
    }
}
