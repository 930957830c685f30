import QtQuick
import Vantrel.ViewModels

/** The name of a task, to be changed where it stands on its card. Goes when the editor turns to something else. */
AppTextField {
    id: root

    required property TaskNameEditor editor
    required property KanbanCard card

    readonly property Item title: card.partFor(KanbanCardFocus.Name)
    readonly property point place: title.mapToItem(card, 0, 0)
    readonly property string taskId: card.card.id
    readonly property bool isWanted: editor.taskId === taskId

    objectName: "cardNameField"
    x: place.x - leftPadding
    y: place.y - 5
    width: card.width - 2 * x
    height: Math.max(title.height, contentHeight) + 10
    leftPadding: 6
    rightPadding: 6
    font.pixelSize: Theme.body * card.zoom
    font.weight: Theme.titleWeight
    text: editor.text
    readOnly: editor.isSaving
    opacity: editor.isSaving ? 0.6 : 1
    Accessible.name: qsTr("Task name")

    Component.onCompleted: {
        forceActiveFocus(Qt.OtherFocusReason);
        selectAll();
    }
    onIsWantedChanged: {
        if (isWanted)
            return;
        if (activeFocus)
            card.forceActiveFocus(Qt.OtherFocusReason);
        destroy();
    }
    onTextEdited: editor.text = text
    onAccepted: if (!inputMethodComposing) editor.commit()
    // Whoever turns to something else means what is typed; but a sheet above the window takes the focus only for a time.
    onActiveFocusChanged: {
        if (activeFocus || !isWanted || !Window.active || editor.alertMessage !== "")
            return;
        if (text.trim() === "")
            editor.cancel();
        else
            editor.commit();
    }
    Keys.onEscapePressed: editor.cancel()
    Keys.onTabPressed: editor.commit()
    Keys.onBacktabPressed: editor.commit()
    // These belong to the board, which would leave the card.
    Keys.onUpPressed: {}
    Keys.onDownPressed: {}
}
