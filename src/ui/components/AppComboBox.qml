pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/** One choice out of a few. Left and right change it too while it has the focus. */
T.ComboBox {
    id: root

    /** What is chosen here, for the screen reader. */
    required property string label

    property bool isReturnDown: false
    readonly property real widestText: {
        let widest = 0;
        for (const text of model)
            widest = Math.max(widest, metrics.advanceWidth(text));
        return widest;
    }

    implicitWidth: Math.ceil(widestText) + leftPadding + rightPadding
    implicitHeight: Theme.controlHeight
    leftPadding: 14
    rightPadding: 34
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    font.weight: Theme.titleWeight
    hoverEnabled: true
    Accessible.name: label
    Accessible.description: displayText
    Accessible.onPressAction: root.popup.open()
    // Opens as the key is let go: a list that is open then takes that as a choice.
    Keys.onReturnPressed: isReturnDown = true
    Keys.onEnterPressed: isReturnDown = true
    Keys.onReleased: event => {
        if (!isReturnDown || event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter)
            return;
        isReturnDown = false;
        event.accepted = !popup.visible;
        if (!popup.visible)
            popup.open();
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    function step(by: int) {
        const next = Math.max(0, Math.min(count - 1, currentIndex + by));
        if (next === currentIndex)
            return;
        currentIndex = next;
        activated(next);
    }

    FontMetrics {
        id: metrics
        font: root.font
    }

    contentItem: Text {
        text: root.displayText
        font: root.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    indicator: SymbolImage {
        x: root.width - width - 12
        anchors.verticalCenter: parent.verticalCenter
        symbol: "chevron.down"
        size: Theme.smallIconSize
        color: Theme.secondaryText
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down ? Theme.press : root.hovered ? Theme.hover : Theme.surface
        border.width: 1
        border.color: Theme.strongLine

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
        FocusRing { active: root.visualFocus }
    }
    delegate: T.ItemDelegate {
        id: item

        required property string modelData
        required property int index

        width: ListView.view?.width ?? 0
        implicitHeight: Theme.menuItemHeight
        highlighted: root.highlightedIndex === index
        hoverEnabled: true
        text: modelData
        Accessible.name: text
        Accessible.selectable: true
        Accessible.selected: root.currentIndex === index
        Accessible.onPressAction: item.clicked()

        contentItem: Item {
            ThemedText {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                text: item.text
                font.weight: root.currentIndex === item.index ? Theme.headingWeight : Theme.regularWeight
                Accessible.ignored: true
            }
            SymbolImage {
                anchors.right: parent.right
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                visible: root.currentIndex === item.index
                symbol: "checkmark"
                size: Theme.smallIconSize
                color: Theme.accent
            }
        }
        background: Rectangle {
            radius: Theme.chipRadius
            color: item.highlighted ? Theme.hover : "transparent"
        }
    }
    popup: T.Popup {
        y: root.height + 4
        width: Math.max(root.width, 150)
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 5
        margins: 8

        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            interactive: false
            Accessible.role: Accessible.List
            Accessible.name: root.label
        }
        background: Item {
            SoftShadow {
                radius: frame.radius
            }
            Rectangle {
                id: frame
                anchors.fill: parent
                radius: Theme.cardRadius
                color: Theme.surface
                border.width: 1
                border.color: Theme.line
            }
        }
        enter: Transition {
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
        }
    }
}
