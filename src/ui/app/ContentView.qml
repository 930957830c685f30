pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The screen below the toolbar: the board's first load and its failure, then the task list. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property bool showsList: root.app.loading.boardReady && !root.app.loading.failed

    Lazy {
        anchors.fill: parent
        focus: active
        active: root.app.loading.failed
        sourceComponent: BoardErrorView {
            objectName: "boardErrorScreen"
            focus: true
            loading: root.app.loading
        }
    }
    // A load that is over before the eye can follow shows no screen of its own.
    Delayed {
        anchors.fill: parent
        wanted: !root.showsList && !root.app.loading.failed
        sourceComponent: BoardLoadingView {
            objectName: "boardLoadingScreen"
            loading: root.app.loading
        }
    }
    Lazy {
        id: list
        anchors.fill: parent
        focus: true
        active: root.showsList
        sourceComponent: TaskListView {
            focus: true
            app: root.app
        }
        onLoaded: root.app.contentAppeared()
    }
    // The board stands already; its load's bar finishes above it.
    ProgressLine {
        width: parent.width
        height: 2
        radius: 0
        value: root.app.loading.progress
        color: "transparent"
        opacity: root.showsList && root.app.loading.loading ? 1 : 0
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation { duration: Theme.move }
        }
    }
}
