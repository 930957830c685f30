import QtQuick
import Vantrel.ViewModels

/** A passing notice that rises from the bottom. */
FocusScope {
    id: root

    required property ToastViewModel toast
    property real maximumWidth: 600

    objectName: "toast-notification"
    width: Math.min(maximumWidth, message.implicitWidth + 88)
    height: Math.max(40, message.height + 20)
    opacity: toast.showing ? 1 : 0
    visible: opacity > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: toast.accessibleLabel
    Accessible.description: qsTr("Double tap to dismiss notification")
    Accessible.onPressAction: root.toast.dismiss()

    readonly property color toneColor: {
        switch (toast.tone) {
        case ToastViewModel.Success: return Theme.green;
        case ToastViewModel.Warning: return Theme.amber;
        case ToastViewModel.Error: return Theme.red;
        default: return Theme.accent;
        }
    }

    transform: Translate {
        y: root.toast.showing ? 0 : 12

        Behavior on y {
            NumberAnimation { duration: Theme.move; easing.type: Easing.OutCubic }
        }
    }
    Behavior on opacity {
        NumberAnimation { duration: Theme.move }
    }

    SoftShadow {
        radius: Theme.controlRadius
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.strongLine
    }
    SymbolImage {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.toast.symbol
        color: root.toneColor
    }
    ThemedText {
        id: message
        x: 42
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - 88
        text: root.toast.message
        wrapMode: Text.Wrap
    }
    ToolbarButton {
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 24
        implicitHeight: 24
        focus: true
        symbol: "xmark"
        symbolSize: Theme.smallIconSize
        text: qsTr("Dismiss notification")
        hint: ""
        Accessible.description: qsTr("Dismisses the current notification")
        onClicked: root.toast.dismiss()
    }
}
