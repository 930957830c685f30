import QtQuick

/** Scrolls a view while something is dragged near its upper or lower edge, the faster the nearer. */
FrameAnimation {
    id: root

    required property WheelScroll scroller
    /** Where the pointer is in the view, from its top. */
    property real pointerY: 0
    property bool wanted: false

    readonly property real edge: 56
    readonly property real fullSpeed: 900
    readonly property real pull: {
        const bottom = scroller.flickable.height - edge;
        const depth = pointerY < edge ? pointerY - edge : Math.max(0, pointerY - bottom);
        return Math.max(-1, Math.min(1, depth / edge));
    }

    running: wanted && pull !== 0
    onTriggered: scroller.scrollBy(pull * fullSpeed * frameTime)
}
