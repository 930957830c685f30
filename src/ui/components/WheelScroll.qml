import QtQuick

/**
 * Lets wheel and touch scroll a view whose content the mouse drags for other ends. At either end the wheel goes on to
 * whatever lies behind.
 */
Item {
    id: root

    required property Flickable flickable
    property int orientation: Qt.Vertical
    /** Shared by views that lie in each other. */
    property WheelTurn turn: null

    readonly property bool vertical: orientation === Qt.Vertical
    readonly property real first: vertical ? flickable.originY - flickable.topMargin
                                           : flickable.originX - flickable.leftMargin
    readonly property real place: vertical ? flickable.contentY : flickable.contentX
    readonly property real last: Math.max(first, vertical
        ? flickable.originY + flickable.contentHeight + flickable.bottomMargin - flickable.height
        : flickable.originX + flickable.contentWidth + flickable.rightMargin - flickable.width)
    /** A notch of a mouse wheel, in pixels. */
    readonly property real notch: 90

    /** Moves by so many pixels; false if the view stands at that end already. */
    function scrollBy(distance: real): bool {
        glide.stop();
        const to = Math.max(first, Math.min(last, place + distance));
        if (Math.abs(to - place) < 0.5)
            return false;
        if (vertical)
            flickable.contentY = to;
        else
            flickable.contentX = to;
        return true;
    }

    /** Ends a glide where it is. */
    function stop() {
        glide.stop();
    }

    /** Moves to that place, or as near to it as the content goes, where the eye can follow. */
    function glideTo(goal: real) {
        glide.stop();
        glide.endsAtFirst = goal <= first;
        glide.to = Math.max(first, Math.min(last, goal));
        glide.start();
    }

    NumberAnimation {
        id: glide

        property bool endsAtFirst: false

        target: root.flickable
        property: root.vertical ? "contentY" : "contentX"
        duration: Theme.move
        easing.type: Easing.OutCubic
        // A view of rows of unequal heights learns on the way where its beginning is.
        onFinished: if (endsAtFirst) root.scrollBy(root.first - root.place)
    }

    parent: flickable
    anchors.fill: parent
    // Behind the content: a view inside this one scrolls first.
    z: -1

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        onWheel: event => {
            const pixels = root.vertical ? event.pixelDelta.y : event.pixelDelta.x;
            const angle = root.vertical ? event.angleDelta.y : event.angleDelta.x;
            const distance = pixels !== 0 ? -pixels : -angle / 120 * root.notch;
            event.accepted = (root.turn?.isFree(root) ?? true) && root.scrollBy(distance);
            if (event.accepted)
                root.turn?.take(root);
        }
    }
    DragHandler {
        acceptedDevices: PointerDevice.TouchScreen
        target: null
        xAxis.enabled: !root.vertical
        yAxis.enabled: root.vertical
        property real before: 0
        onActiveChanged: before = 0
        onTranslationChanged: {
            const now = root.vertical ? translation.y : translation.x;
            root.scrollBy(before - now);
            before = now;
        }
    }
}
