import QtQuick

/** Scrolls a view while something is dragged near one of its edges, the faster the nearer. */
FrameAnimation {
    id: root

    required property WheelScroll scroller
    /** Where the pointer is in the view, from its top or its left. */
    property real pointer: 0
    property bool wanted: false

    readonly property real edge: 56
    readonly property real fullSpeed: 900
    readonly property real pull: {
        const end = (scroller.vertical ? scroller.flickable.height : scroller.flickable.width) - edge;
        const depth = pointer < edge ? pointer - edge : Math.max(0, pointer - end);
        return Math.max(-1, Math.min(1, depth / edge));
    }

    running: wanted && pull !== 0
    onTriggered: scroller.scrollBy(pull * fullSpeed * frameTime)
}
