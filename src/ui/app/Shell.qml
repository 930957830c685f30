pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Everything inside the window: toolbar, the screen, and what rises above it. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property bool hasSheet: root.app.quickAdd.open

    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Vantrel Main Application")
    Accessible.description: root.app.taskList.accessibleValue

    /** One shortcut for each command, whoever else shows it. None acts while a sheet stands. */
    Instantiator {
        model: root.app.commands.all

        delegate: CommandShortcut {
            required property Command modelData

            command: modelData
            blocked: root.hasSheet && modelData.commandId !== "quit"
        }
    }
    Shortcut {
        sequences: ["F6"]
        enabled: !root.hasSheet
        onActivated: root.moveToPane(1)
    }
    Shortcut {
        sequences: ["Shift+F6"]
        enabled: !root.hasSheet
        onActivated: root.moveToPane(-1)
    }
    Shortcut {
        sequences: ["F10"]
        enabled: !root.hasSheet
        onActivated: toolbar.openMenu()
    }

    /** Moves the keyboard between the parts of the window that can take it. */
    function moveToPane(step: int) {
        const panes = [rail, toolbar, content].filter(pane => pane.visible);
        const current = panes.findIndex(pane => pane.activeFocus);
        const next = panes[(current + step + panes.length) % panes.length];
        next.forceActiveFocus(Qt.TabFocusReason);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }

    AppToolbar {
        id: toolbar
        width: parent.width
        height: Theme.toolbarHeight
        app: root.app
        enabled: !root.hasSheet
    }

    ModeRail {
        id: rail
        anchors.top: toolbar.bottom
        anchors.bottom: parent.bottom
        width: visible ? Theme.railWidth : 0
        visible: root.app.taskList.isRailVisible
        taskList: root.app.taskList
        enabled: !root.hasSheet
    }

    ContentView {
        id: content
        anchors.top: toolbar.bottom
        anchors.bottom: parent.bottom
        anchors.left: rail.right
        anchors.right: parent.right
        focus: true
        app: root.app
        enabled: !root.hasSheet
    }

    SavingIndicator {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.laneGap
        saving: root.app.saving
    }

    Loader {
        id: quickAdd
        anchors.fill: parent
        active: root.app.quickAdd.open
        sourceComponent: QuickAddSheet {
            quickAdd: root.app.quickAdd
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }

    ToastView {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 26
        maximumWidth: parent.width - 40
        toast: root.app.toast
    }
}
