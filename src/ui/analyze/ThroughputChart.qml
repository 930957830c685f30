pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Shapes
import Vantrel.ViewModels

/** Tasks finished in each period, as a line. */
PlotArea {
    id: root

    required property AnalyzeViewModel analyze

    objectName: "throughputChart"
    title: qsTr("Completed per %1").arg(analyze.unit)
    summary: chart.summary
    help: qsTr("Hover over the chart to see detailed values")
    chart: analyze.chart
    scale: chart.completedScale
    hasColumns: false
    currentPeak: yOf(currentMark.completed)
    tip: currentMark.summary

    picture: Item {
        Shape {
            anchors.fill: parent
            // The graphics card smooths edges in a layer only; without a card they are smooth, and layers wrong at 2x.
            layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
            layer.samples: 4

            ShapePath {
                strokeWidth: -1
                fillColor: Theme.accentWash
                PathPolyline { path: root.chart.areaBelowLine(root.plotWidth, root.plotHeight) }
            }
            ShapePath {
                strokeWidth: root.isDense ? 1.5 : 2
                strokeColor: Theme.accent
                fillColor: "transparent"
                joinStyle: ShapePath.RoundJoin
                capStyle: ShapePath.RoundCap
                PathPolyline { path: root.chart.line(root.plotWidth, root.plotHeight) }
            }
        }
        Repeater {
            model: root.isDense ? 0 : root.count

            delegate: Rectangle {
                required property int index

                x: root.xOf(index) - width / 2
                y: root.yOf(root.chart.mark(index).completed) - height / 2
                width: 7
                height: 7
                radius: 3.5
                color: Theme.accent
            }
        }
        Rectangle {
            visible: root.current >= 0
            x: root.xOf(root.current) - width / 2
            y: root.currentPeak - height / 2
            width: 11
            height: 11
            radius: 5.5
            color: Theme.surface
            border.width: 2
            border.color: Theme.accent
        }
    }
}
