pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Tasks finished in each period by their source, as columns: OmniFocus solid, Reminders outlined above it. */
PlotArea {
    id: root

    required property AnalyzeViewModel analyze

    readonly property real barWidth: Math.max(1, Math.min(56, pitch * 0.7))

    objectName: "stackedChart"
    title: qsTr("Throughput by Source")
    summary: analyze.stackedSummary
    help: qsTr("Hover over bars to see detailed breakdown")
    marks: analyze.marks
    axisLabels: analyze.axisLabels
    scale: analyze.stackedScale
    isInset: true

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
    markDelegate: PlotMark {
        id: mark

        readonly property real seam: root.yOf(modelData.omniFocus)

        plot: root
        tip: modelData.breakdown
        peakY: root.yOf(modelData.omniFocus + modelData.reminders)

        SourceBar {
            visible: mark.modelData.omniFocus > 0
            x: (mark.width - width) / 2
            y: mark.seam
            width: root.barWidth
            height: root.plotHeight - mark.seam
        }
        SourceBar {
            visible: mark.modelData.reminders > 0
            x: (mark.width - width) / 2
            y: mark.peakY
            width: root.barWidth
            height: mark.seam - mark.peakY - (mark.modelData.omniFocus > 0 ? 1 : 0)
            isOutlined: true
        }
    }
}
