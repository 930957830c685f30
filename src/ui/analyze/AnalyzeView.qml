pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** What was finished in the last twenty days. */
FocusScope {
    id: root

    required property AnalyzeViewModel analyze

    readonly property bool showsContent: (analyze.screen === AnalyzeViewModel.Content
                                          || analyze.screen === AnalyzeViewModel.Loading) && analyze.hasContent

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Throughput Analytics")
    Component.onCompleted: analyze.appear()
    Component.onDestruction: analyze.disappear()

    Delayed {
        id: loadingScreen
        anchors.fill: parent
        wanted: root.analyze.screen === AnalyzeViewModel.Loading
        sourceComponent: MessageScreen {
            objectName: "analyzeLoading"
            busy: true
            title: qsTr("Loading completed tasks...")
            accessibleDescription: qsTr("Please wait while completed tasks are being loaded")
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.analyze.screen === AnalyzeViewModel.Error
        focus: active
        sourceComponent: MessageScreen {
            objectName: "analyzeError"
            focus: true
            symbol: "exclamationmark.triangle"
            symbolColor: Theme.amber
            title: qsTr("Error Loading Data")
            message: root.analyze.errorMessage
            actionText: qsTr("Try Again")
            actionDescription: qsTr("Attempts to reload completed tasks and analytics data")
            onActionTriggered: root.analyze.loadData()
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.analyze.screen === AnalyzeViewModel.Empty
        focus: active
        sourceComponent: MessageScreen {
            objectName: "analyzeEmpty"
            focus: true
            symbol: "chart.line.uptrend.xyaxis"
            title: qsTr("No Completed Tasks")
            message: qsTr("Complete some tasks to see your throughput analytics. The chart will show your productivity "
                          + "patterns over the last 20 days.")
            actionText: qsTr("Refresh Data")
            actionDescription: qsTr("Loads completed tasks to begin analytics")
            onActionTriggered: root.analyze.loadData()
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.showsContent
        visible: !loadingScreen.active
        focus: active
        sourceComponent: Flickable {
            id: page

            readonly property real leastChartHeight: 280
            readonly property real innerWidth: width - 2 * Theme.windowPadding

            contentHeight: Math.max(height, chart.y + leastChartHeight + Theme.windowPadding)
            interactive: false
            clip: true
            T.ScrollBar.vertical: AppScrollBar {}

            WheelScroll {
                flickable: page
            }
            ScreenHeader {
                id: header
                x: Theme.windowPadding
                y: Theme.windowPadding
                width: page.innerWidth
                title: qsTr("Throughput Analytics")
                subtitle: qsTr("Track your completed tasks over time to understand productivity patterns")

                AppComboBox {
                    objectName: "periodPicker"
                    focus: true
                    label: qsTr("Time Period")
                    model: root.analyze.periods
                    currentIndex: root.analyze.period
                    onActivated: index => root.analyze.period = index
                }
                AppComboBox {
                    objectName: "chartTypePicker"
                    label: qsTr("Chart Type")
                    model: root.analyze.chartTypes
                    currentIndex: root.analyze.chartType
                    onActivated: index => root.analyze.chartType = index
                }
                ToolbarButton {
                    objectName: "refreshAnalyticsButton"
                    symbol: "arrow.clockwise"
                    text: qsTr("Refresh analytics data")
                    Accessible.description: qsTr("Reloads completed tasks and updates charts")
                    onClicked: root.analyze.refresh()
                }
            }
            MetricsCardsView {
                id: metrics
                x: Theme.windowPadding
                y: header.y + header.height + Theme.laneGap
                width: page.innerWidth
                cards: root.analyze.metricCards
            }
            Panel {
                id: chart
                x: Theme.windowPadding
                y: metrics.y + metrics.height + Theme.laneGap
                width: page.innerWidth
                height: page.contentHeight - y - Theme.windowPadding

                Lazy {
                    anchors.fill: parent
                    active: !root.analyze.stacked
                    sourceComponent: ThroughputChart {
                        analyze: root.analyze
                    }
                }
                Lazy {
                    anchors.fill: parent
                    active: root.analyze.stacked
                    sourceComponent: StackedThroughputChart {
                        analyze: root.analyze
                    }
                }
            }
        }
    }
}
