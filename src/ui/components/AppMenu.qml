import QtQuick
import QtQuick.Templates as T

/** A menu of commands. */
T.Menu {
    id: root

    /** Leaves room for symbols before the texts. */
    property bool hasSymbols: true
    /** Before the title, where this menu lies within another one. */
    property string symbol: ""
    /** What had the focus before; a closing menu of the templates leaves it to nobody. */
    property Item focusedBefore: null

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
    background: PopupFrame {
        // What is pressed between the commands is not meant for the card below.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }
    }
    onAboutToShow: {
        focusedBefore = parent?.Window.activeFocusItem ?? null;
        // The item that a popup is for screen readers is not to be had otherwise.
        contentItem.parent.Accessible.name = title;
    }
    onClosed: {
        const window = focusedBefore?.Window.window;
        if (window && window.activeFocusItem === window.contentItem)
            focusedBefore.forceActiveFocus();
        focusedBefore = null;
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }
}
