pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** How old the open tasks are. */
FocusScope {
    id: root

    required property OptimizeViewModel optimize

    readonly property bool showsContent: (optimize.screen === OptimizeViewModel.Content
                                          || optimize.screen === OptimizeViewModel.Loading) && optimize.hasContent

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Task Age Optimization")
    Component.onCompleted: optimize.appear()
    Component.onDestruction: optimize.disappear()

    Delayed {
        id: loadingScreen
        anchors.fill: parent
        wanted: root.optimize.screen === OptimizeViewModel.Loading
        sourceComponent: MessageScreen {
            objectName: "optimizeLoading"
            busy: true
            title: qsTr("Analyzing task age...")
            accessibleDescription: qsTr("Please wait while tasks are being analyzed")
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.optimize.screen === OptimizeViewModel.Error
        focus: active
        sourceComponent: MessageScreen {
            objectName: "optimizeError"
            focus: true
            symbol: "exclamationmark.triangle"
            symbolColor: Theme.amber
            title: qsTr("Error Analyzing Tasks")
            message: root.optimize.errorMessage
            actionText: qsTr("Try Again")
            onActionTriggered: root.optimize.refreshData()
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.optimize.screen === OptimizeViewModel.Empty
        focus: active
        sourceComponent: MessageScreen {
            objectName: "optimizeEmpty"
            focus: true
            symbol: "chart.bar.xaxis"
            title: qsTr("No Active Tasks")
            message: qsTr("Create or import tasks to analyze their age distribution and optimize your workflow.")
            actionText: qsTr("Refresh")
            onActionTriggered: root.optimize.refreshData()
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.showsContent
        visible: !loadingScreen.active
        focus: active
        sourceComponent: TaskAgeCardGrid {
            focus: true
            optimize: root.optimize

            ScreenHeader {
                width: parent.width
                title: qsTr("Task Age Optimization")
                subtitle: qsTr("Identify aging work to keep your workflow healthy")
            }
            AgeHistogram {
                width: parent.width
                optimize: root.optimize
            }
            TaskAgeOverview {
                width: parent.width
                optimize: root.optimize
            }
        }
    }
}
