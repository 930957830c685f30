import QtQuick

/** A dashed line around the cell in which the dragged cards would land. */
Canvas {
    id: root

    property real radius: Theme.cardRadius
    property color color: Theme.accent

    onColorChanged: requestPaint()
    onPaint: {
        const context = getContext("2d");
        context.reset();
        context.strokeStyle = root.color;
        context.lineWidth = Theme.ringWidth;
        context.setLineDash([3, 2]);
        context.roundedRect(1, 1, width - 2, height - 2, root.radius, root.radius);
        context.stroke();
    }
}
