import QtQuick
import Vantrel.ViewModels

/** One period of a chart, as high as the plot: its place for the pointer, the keyboard and the screen reader. */
Item {
    id: root

    required property throughputMark modelData
    required property int index
    required property PlotArea plot
    /** What the hint beside it says. */
    required property string tip
    /** Where its highest point is. */
    required property real peakY

    readonly property bool isCurrent: plot.current === index

    x: plot.xOf(index) - width / 2
    width: plot.pitch
    height: plot.plotHeight
    Accessible.role: Accessible.Graphic
    Accessible.name: modelData.moment + ": " + tip.replace("\n", ", ")
    Accessible.focusable: true
}
