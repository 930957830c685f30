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

    // The chart may go before its marks.
    readonly property bool isCurrent: plot?.current === index

    x: (plot?.xOf(index) ?? 0) - width / 2
    width: plot?.pitch ?? 0
    height: plot?.plotHeight ?? 0
    Accessible.role: Accessible.Graphic
    Accessible.name: modelData.moment + ": " + tip.replace("\n", ", ")
    Accessible.focusable: true
}
