import QtQuick
import QtQuick.Templates as T

/** A menu of commands. */
T.Menu {
    id: root

    implicitWidth: Math.max(220, contentWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 5
    margins: 8
    overlap: 1

    delegate: AppMenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < root.count; ++i)
                widest = Math.max(widest, root.itemAt(i)?.implicitWidth ?? 0);
            return widest;
        }
        model: root.contentModel
        interactive: Window.window ? contentHeight > Window.window.height - 40 : false
        clip: true
        currentIndex: root.currentIndex
        T.ScrollBar.vertical: AppScrollBar {}
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.topMargin: 3
            anchors.margins: -2
            radius: Theme.windowPartRadius
            color: Theme.liftedShadow
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.windowPartRadius - 2
            color: Theme.surface
            border.width: 1
            border.color: Theme.line
        }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }
}
