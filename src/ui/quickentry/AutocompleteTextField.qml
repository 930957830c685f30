pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/**
 * A field that offers names to complete with. Up and Down go through them, Return takes one, Escape puts them
 * away. While the keyboard is elsewhere, its text may stand on a chip.
 */
AppTextField {
    id: root

    property var suggestions: []
    property bool isLoading: false
    property string symbol: ""
    /** Written before the text on its chip; no chip without one. */
    property string chipPrefix: ""
    property bool showingSuggestions: false

    readonly property bool isOnChip: chipPrefix !== "" && !activeFocus && length > 0
    readonly property bool isListShown: showingSuggestions && activeFocus && suggestions.length > 0

    signal suggestionChosen(string suggestion)

    leftPadding: symbol === "" ? 10 : 32
    rightPadding: isLoading ? 32 : 10
    color: isOnChip ? "transparent" : Theme.text
    onActiveFocusChanged: showingSuggestions = activeFocus
    onTextEdited: showingSuggestions = true
    onSuggestionsChanged: list.currentIndex = -1
    Keys.onDownPressed: list.currentIndex = Math.min(list.currentIndex + 1, list.count - 1)
    Keys.onUpPressed: list.currentIndex = Math.max(list.currentIndex - 1, -1)
    Keys.onReturnPressed: event => event.accepted = takeCurrent()
    Keys.onEnterPressed: event => event.accepted = takeCurrent()
    Keys.onEscapePressed: event => {
        event.accepted = isListShown;
        showingSuggestions = false;
    }

    function takeCurrent(): bool {
        if (!isListShown || list.currentIndex < 0)
            return false;
        choose(suggestions[list.currentIndex]);
        return true;
    }
    function choose(suggestion: string) {
        suggestionChosen(suggestion);
        showingSuggestions = false;
    }

    SymbolImage {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        visible: root.symbol !== ""
        symbol: root.symbol
        size: Theme.smallIconSize
        color: Theme.secondaryText
    }
    Pill {
        x: root.leftPadding - 2
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, root.width - x - 10)
        visible: root.isOnChip
        radius: Theme.chipRadius
        horizontalPadding: 6
        text: root.chipPrefix + root.text
        textColor: Theme.violetText
        color: Theme.violetTint
        clip: true
        Accessible.ignored: true
    }
    BusySpinner {
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isLoading
        size: Theme.smallIconSize
    }
    T.Popup {
        y: root.height + Theme.unit
        width: root.width
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 5
        margins: Theme.gap
        visible: root.isListShown
        closePolicy: T.Popup.NoAutoClose

        contentItem: ListView {
            id: list
            implicitHeight: contentHeight
            model: root.suggestions
            currentIndex: -1
            interactive: false
            Accessible.role: Accessible.List
            Accessible.name: root.Accessible.name

            delegate: T.ItemDelegate {
                id: item

                required property string modelData
                required property int index

                width: ListView.view?.width ?? 0
                implicitHeight: Theme.menuItemHeight
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                Accessible.name: modelData
                Accessible.onPressAction: item.clicked()
                onClicked: root.choose(modelData)

                contentItem: Item {
                    HighlightedText {
                        x: 10
                        width: parent.width - 20
                        anchors.verticalCenter: parent.verticalCenter
                        text: item.modelData
                        highlight: root.text.trim()
                    }
                }
                background: Rectangle {
                    radius: Theme.chipRadius
                    color: item.hovered || item.ListView.isCurrentItem ? Theme.hover : "transparent"
                }
            }
        }
        background: PopupFrame {}
    }
}
