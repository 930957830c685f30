pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Everything inside the window: toolbar, the screen, and what rises above it. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property bool hasSheet: root.app.quickEntry.open || root.app.importer.open || root.app.exporter.open
                                     || root.app.board.nameEditor.alertMessage !== ""
                                     || root.app.board.contextMenu.question !== ""
    /** Something stands in the way of commands: they wait until it is gone. */
    readonly property bool isBusy: root.hasSheet || root.app.board.popover.kind !== CardPopover.None
    readonly property bool isTyping: Window.activeFocusItem instanceof TextInput
                                     || Window.activeFocusItem instanceof TextEdit

    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Vantrel Main Application")
    Accessible.description: root.app.taskList.accessibleValue

    Instantiator {
        model: root.app.commands.all

        delegate: CommandShortcut {
            required property Command modelData

            command: modelData
            blocked: modelData.commandId !== "quit" && root.isBusy || modelData.isForBoard && root.isTyping
        }
    }
    Connections {
        target: root.app.commands

        function onWindowCommandRequested(id: string) {
            switch (id) {
            case "nextPane":
                root.moveToPane(1);
                break;
            case "previousPane":
                root.moveToPane(-1);
                break;
            case "menu":
                toolbar.openMenu();
                break;
            }
        }
    }

    /** Moves the keyboard between the parts of the window that can take it. */
    function moveToPane(step: int) {
        const panes = [rail, toolbar, content, toast];
        let next = 0;
        for (let i = 0; i < panes.length; ++i)
            next = panes[i].activeFocus ? i : next;
        do
            next = (next + step + panes.length) % panes.length;
        while (!panes[next].visible);
        panes[next].forceActiveFocus(Qt.TabFocusReason);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }

    AppToolbar {
        id: toolbar
        objectName: "toolbar"
        width: parent.width
        height: Theme.toolbarHeight
        app: root.app
        enabled: !root.hasSheet
    }

    // It rests while there is nothing to switch between, but not for a load that is over before the eye can follow.
    // Its place stays free, so that the board need not move aside when it comes back.
    Timer {
        id: railHiding
        interval: 150
        running: rail.visible && !root.app.taskList.isRailVisible
        onTriggered: rail.visible = false
    }
    Connections {
        target: root.app.taskList

        function onStateChanged() {
            if (root.app.taskList.isRailVisible)
                rail.visible = true;
        }
    }
    ModeRail {
        id: rail
        objectName: "rail"
        anchors.top: toolbar.bottom
        anchors.bottom: parent.bottom
        width: Theme.railWidth
        taskList: root.app.taskList
        enabled: !root.hasSheet
    }

    ContentView {
        id: content
        objectName: "content"
        anchors.top: toolbar.bottom
        anchors.bottom: parent.bottom
        x: rail.width
        width: Math.max(0, root.width - rail.width)
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

    Lazy {
        anchors.fill: parent
        active: root.app.quickEntry.open
        sourceComponent: QuickEntrySheet {
            objectName: "quickEntrySheet"
            quickEntry: root.app.quickEntry
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }

    Lazy {
        anchors.fill: parent
        active: root.app.importer.open
        sourceComponent: TaskImportSheet {
            importer: root.app.importer
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }
    Lazy {
        anchors.fill: parent
        active: root.app.exporter.open
        sourceComponent: TaskExportSheet {
            exporter: root.app.exporter
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }

    Lazy {
        anchors.fill: parent
        active: root.app.board.nameEditor.alertMessage !== ""
        sourceComponent: NoticeSheet {
            title: qsTr("Error")
            message: root.app.board.nameEditor.alertMessage
            onDismissed: root.app.board.nameEditor.dismissAlert()
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }

    Lazy {
        anchors.fill: parent
        active: root.app.board.contextMenu.question !== ""
        sourceComponent: QuestionSheet {
            objectName: "deletionQuestion"
            title: root.app.board.contextMenu.question
            message: root.app.board.contextMenu.questionDetails
            answer: qsTr("Delete")
            onAgreed: root.app.board.contextMenu.confirmDeletion()
            onDismissed: root.app.board.contextMenu.cancelDeletion()
        }
        onActiveChanged: if (!active) content.forceActiveFocus()
    }

    ToastView {
        id: toast
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 26
        maximumWidth: parent.width - 40
        toast: root.app.toast
        onVisibleChanged: if (!visible && activeFocus) content.forceActiveFocus()
    }
}
