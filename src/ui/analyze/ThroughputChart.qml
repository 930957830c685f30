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
    summary: analyze.chartSummary
    help: qsTr("Hover over the chart to see detailed values")
    marks: analyze.marks
    axisLabels: analyze.axisLabels
    scale: analyze.completedScale

    /** The points of the line; to be filled, with the corners of the axis. */
    function outline(isFilled: bool): var {
        const marks = root.marks;
        const points = marks.map((mark, index) => Qt.point(xOf(index), yOf(mark.completed)));
        if (isFilled && marks.length > 0)
            points.push(Qt.point(xOf(marks.length - 1), plotHeight), Qt.point(xOf(0), plotHeight));
        return points;
    }

    picture: Shape {
        // Smooth edges also where the graphics card draws.
        layer.enabled: true
        layer.samples: 4

        ShapePath {
            strokeWidth: -1
            fillColor: Theme.accentWash
            PathPolyline { path: root.outline(true) }
        }
        ShapePath {
            strokeWidth: root.isDense ? 1.5 : 2
            strokeColor: Theme.accent
            fillColor: "transparent"
            joinStyle: ShapePath.RoundJoin
            capStyle: ShapePath.RoundCap
            PathPolyline { path: root.outline(false) }
        }
    }
    markDelegate: PlotMark {
        id: mark
        plot: root
        tip: modelData.summary
        peakY: root.yOf(modelData.completed)

        Rectangle {
            visible: mark.isCurrent || !root.isDense
            x: (mark.width - width) / 2
            y: mark.peakY - height / 2
            width: mark.isCurrent ? 11 : 7
            height: width
            radius: width / 2
            color: mark.isCurrent ? Theme.surface : Theme.accent
            border.width: 2
            border.color: Theme.accent
        }
    }
}
