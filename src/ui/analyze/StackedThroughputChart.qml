pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Shapes
import Vantrel.ViewModels

/**
 * Tasks finished in each period by their source, as columns: OmniFocus solid, Reminders above it in a light tone with
 * an edge, so that more than the colour tells them apart.
 */
PlotArea {
    id: root

    required property AnalyzeViewModel analyze

    readonly property real barWidth: Math.min(56, pitch * 0.7)

    objectName: "stackedChart"
    title: qsTr("Throughput by Source")
    summary: chart.stackedSummary
    help: qsTr("Hover over bars to see detailed breakdown")
    chart: analyze.chart
    scale: chart.stackedScale
    hasColumns: true
    currentPeak: yOf(currentMark.omniFocus + currentMark.reminders)
    tip: currentMark.breakdown

    headerContent: Row {
        spacing: Theme.laneGap

        Repeater {
            model: [qsTr("OmniFocus"), qsTr("Reminders")]

            delegate: Row {
                id: entry

                required property string modelData
                required property int index

                spacing: 6

                SourceBar {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 14
                    height: 14
                    isOutlined: entry.index === 1
                }
                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.modelData
                    font.pixelSize: Theme.small
                    color: Theme.secondaryText
                }
            }
        }
    }
    picture: Item {
        Repeater {
            model: root.isDense ? 0 : root.count

            delegate: Item {
                id: column

                required property int index

                readonly property throughputMark mark: root.chart.mark(index)
                readonly property real seam: root.yOf(mark.omniFocus)
                readonly property real peak: root.yOf(mark.omniFocus + mark.reminders)

                x: root.xOf(index) - root.barWidth / 2

                SourceBar {
                    visible: column.mark.omniFocus > 0
                    y: column.seam
                    width: root.barWidth
                    height: root.plotHeight - y
                }
                SourceBar {
                    visible: column.mark.reminders > 0
                    y: column.peak
                    width: root.barWidth
                    height: column.seam - y - (column.mark.omniFocus > 0 ? 1 : 0)
                    isOutlined: true
                }
            }
        }
        // Where columns are a few pixels wide they stand without a gap.
        Shape {
            anchors.fill: parent
            visible: root.isDense

            ShapePath {
                strokeWidth: -1
                fillColor: Theme.remindersWash
                PathPolyline { path: root.isDense ? root.chart.columns(root.plotWidth, root.plotHeight, true) : [] }
            }
            ShapePath {
                strokeWidth: -1
                fillColor: Theme.omniFocus
                PathPolyline { path: root.isDense ? root.chart.columns(root.plotWidth, root.plotHeight, false) : [] }
            }
            ShapePath {
                strokeWidth: 2
                strokeColor: Theme.reminders
                fillColor: "transparent"
                capStyle: ShapePath.FlatCap
                PathMultiline { paths: root.isDense ? root.chart.reminderEdges(root.plotWidth, root.plotHeight) : [] }
            }
        }
        // The column that is looked at.
        Rectangle {
            visible: root.current >= 0
            x: root.xOf(root.current) - width / 2
            y: root.currentPeak
            width: Math.max(4, root.barWidth + 6)
            height: root.plotHeight - y
            radius: 3
            color: "transparent"
            border.width: root.isDense ? 1 : 2
            border.color: Theme.accent
        }
    }
}
