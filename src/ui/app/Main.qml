import QtQuick
import Vantrel.ViewModels

/** The main window. Empty grounds first; what costs time to make comes behind the first frame. */
Window {
    id: root

    required property AppViewModel app

    width: 1000
    height: 700
    minimumWidth: 560
    minimumHeight: 400
    x: Screen.virtualX + (Screen.width - width) / 2
    y: Screen.virtualY + (Screen.height - height) / 2
    visible: true
    title: qsTr("Vantrel")
    color: Theme.window

    Binding {
        target: Theme
        property: "dark"
        value: root.app.appearance.dark
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: root.app.appearance.reducedMotion
    }

    // What the shell will cover: the first frame shows the window's parts already.
    Rectangle {
        width: parent.width
        height: Theme.toolbarHeight
        color: Theme.surface

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }

    // By its file, not as a component: the shell's types, and the libraries that they need, are read only then.
    Loader {
        id: shell
        objectName: "shell"
        anchors.fill: parent
        focus: true
    }
    Connections {
        target: root
        enabled: shell.status === Loader.Null && !opening.running

        function onFrameSwapped() {
            opening.start();
        }
    }
    // Not at once: the frame is on its way, and whoever shows it comes first.
    Timer {
        id: opening
        interval: 0
        onTriggered: shell.setSource("Shell.qml", {app: root.app})
    }
}
