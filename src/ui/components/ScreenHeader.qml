import QtQuick

/** What a screen is called and what it is for, with its controls at the right or, where that is too narrow, below. */
Item {
    id: root

    required property string title
    required property string subtitle
    default property alias controls: row.data

    readonly property bool isNarrow: width < texts.implicitWidth + row.implicitWidth + 24

    implicitHeight: isNarrow ? texts.height + 10 + row.height : Math.max(texts.height, row.height)

    Column {
        id: texts
        width: Math.min(implicitWidth, root.width)
        spacing: 2

        ThemedText {
            width: Math.min(implicitWidth, root.width)
            text: root.title
            font.pixelSize: Theme.huge
            font.weight: Theme.headingWeight
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
            Accessible.description: root.subtitle
        }
        ThemedText {
            width: Math.min(implicitWidth, root.width)
            text: root.subtitle
            color: Theme.secondaryText
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    Row {
        id: row
        x: root.isNarrow ? 0 : root.width - width
        y: root.isNarrow ? texts.height + 10 : (root.height - height) / 2
        spacing: Theme.gap
    }
}
