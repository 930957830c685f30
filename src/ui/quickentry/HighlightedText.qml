import QtQuick

/** A text with the part that equals `highlight`, whatever its case, set off. */
Row {
    id: root

    required property string text
    property string highlight: ""

    readonly property int start: highlight === "" ? -1 : text.toLowerCase().indexOf(highlight.toLowerCase())

    Accessible.ignored: true

    ThemedText {
        id: before
        text: root.start < 0 ? root.text : root.text.slice(0, root.start)
        width: Math.min(implicitWidth, root.width)
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    ThemedText {
        id: match
        visible: root.start >= 0
        text: root.start < 0 ? "" : root.text.slice(root.start, root.start + root.highlight.length)
        width: Math.max(0, Math.min(implicitWidth, root.width - before.width))
        color: Theme.accentText
        font.weight: Theme.headingWeight
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    ThemedText {
        visible: root.start >= 0
        text: root.start < 0 ? "" : root.text.slice(root.start + root.highlight.length)
        width: Math.max(0, Math.min(implicitWidth, root.width - before.width - match.width))
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
