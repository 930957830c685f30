pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** One of: the permission screen, the error screen, the screen of the view mode, with a progress screen over it. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property TaskListViewModel taskList: app.taskList
    readonly property string viewMode: taskList.viewMode
    readonly property bool showsContent: taskList.screen === TaskListViewModel.Content
                                         || taskList.screen === TaskListViewModel.Loading

    Lazy {
        anchors.fill: parent
        active: root.taskList.screen === TaskListViewModel.Permission
        focus: active
        sourceComponent: PermissionScreen {
            objectName: "permissionScreen"
            focus: true
            taskList: root.taskList
            help: root.app.permissionHelp
            remindersFolder: root.app.remindersFolder
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.taskList.screen === TaskListViewModel.Error
        focus: active
        sourceComponent: ErrorScreen {
            objectName: "errorScreen"
            focus: true
            taskList: root.taskList
        }
    }
    KanbanBoard {
        objectName: "board"
        anchors.fill: parent
        focus: visible
        visible: root.viewMode === "kanban" && root.showsContent && !loadingScreen.active
        board: root.app.board
    }
    Lazy {
        anchors.fill: parent
        active: root.viewMode === "analyze" && root.showsContent
        visible: !loadingScreen.active
        focus: active && visible
        sourceComponent: AnalyzeView {
            objectName: "analyzeView"
            focus: true
            analyze: root.app.analyze
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.viewMode === "optimize" && root.showsContent
        visible: !loadingScreen.active
        focus: active && visible
        sourceComponent: OptimizeView {
            objectName: "optimizeView"
            focus: true
            optimize: root.app.optimize
        }
    }
    Lazy {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Math.max(Theme.laneGap, root.height / 10)
        active: root.viewMode === "kanban" && root.app.boardEmpty && root.taskList.screen === TaskListViewModel.Content
        sourceComponent: EmptyBoardHint {
            addCommand: root.app.commands.command("quickAdd")
        }
    }
    Delayed {
        id: loadingScreen
        anchors.fill: parent
        wanted: root.taskList.screen === TaskListViewModel.Loading
        sourceComponent: MessageScreen {
            objectName: "loadingScreen"
            busy: true
            title: qsTr("Loading tasks...")
            message: qsTr("Please wait while your tasks are loaded")
        }
    }
}
