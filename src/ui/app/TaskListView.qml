pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** One of: the permission screen, the error screen, the screen of the view mode, with a progress screen over it. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property TaskListViewModel taskList: app.taskList
    readonly property bool showsContent: taskList.screen === TaskListViewModel.Content
                                         || taskList.screen === TaskListViewModel.Loading

    Lazy {
        anchors.fill: parent
        active: root.taskList.screen === TaskListViewModel.Permission
        focus: active
        sourceComponent: PermissionScreen {
            taskList: root.taskList
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.taskList.screen === TaskListViewModel.Error
        focus: active
        sourceComponent: ErrorScreen {
            taskList: root.taskList
        }
    }
    KanbanBoard {
        anchors.fill: parent
        focus: visible
        visible: root.showsContent && !loadingScreen.active
        board: root.app.board
    }
    Delayed {
        id: loadingScreen
        anchors.fill: parent
        wanted: root.taskList.screen === TaskListViewModel.Loading
        sourceComponent: MessageScreen {
            busy: true
            title: qsTr("Loading tasks...")
            message: qsTr("Please wait while your tasks are loaded")
        }
    }
}
