pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/** A date that may be missing: opens a calendar to pick it, and can be cleared. */
T.AbstractButton {
    id: root

    required property string label
    /** What the field says while there is no date. */
    required property string setText
    required property date date

    readonly property bool hasDate: !isNaN(date.getTime())

    signal switchedOn
    /** An invalid date clears it. */
    signal picked(date date)

    implicitHeight: Theme.controlHeight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    text: hasDate ? date.toLocaleString(Qt.locale(), "ddd d MMM yyyy, HH:mm") : setText
    Accessible.role: Accessible.Button
    Accessible.name: hasDate ? label + ", " + text : text
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onDeletePressed: clear()
    onClicked: {
        if (!hasDate)
            switchedOn();
        calendar.open();
    }

    function clear() {
        picked(new Date(NaN));
        forceActiveFocus();
    }

    contentItem: Item {
        SymbolImage {
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            symbol: "calendar"
            size: Theme.smallIconSize
            color: Theme.secondaryText
        }
        ThemedText {
            x: 32
            width: (clearButton.visible ? clearButton.x : parent.width) - x - Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.hasDate ? Theme.text : Theme.faintText
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        T.AbstractButton {
            id: clearButton
            anchors.right: parent.right
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: clearText.implicitWidth + 12
            implicitHeight: 22
            visible: root.hasDate
            text: qsTr("Clear")
            Accessible.name: text + ", " + root.label
            Accessible.onPressAction: clicked()
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: root.clear()

            contentItem: ThemedText {
                id: clearText
                text: clearButton.text
                color: Theme.accentText
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: Theme.chipRadius
                color: clearButton.hovered ? Theme.hover : "transparent"

                FocusRing { active: clearButton.visualFocus }
            }
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: root.hovered ? Theme.hover : Theme.field
        border.width: root.activeFocus ? Theme.ringWidth : 1
        border.color: root.activeFocus ? Theme.accent : Theme.strongLine
    }

    T.Popup {
        id: calendar
        y: root.height + Theme.unit
        padding: Theme.laneGap
        margins: Theme.gap
        implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        focus: true
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        onClosed: root.forceActiveFocus()

        contentItem: CalendarView {
            label: root.label
            date: root.date
            focus: true
            onPicked: date => root.picked(date)
            onFinished: calendar.close()
        }
        background: PopupFrame {}
    }
}
