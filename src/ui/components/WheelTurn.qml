import QtQuick

/**
 * Which of several views that lie in each other the wheel turns. A view behind, once it moves, goes on until the wheel
 * rests: what comes to lie under the pointer meanwhile does not catch it.
 */
Timer {
    id: root

    property Item owner: null

    interval: 300
    onTriggered: owner = null

    function isFree(view: Item): bool {
        if (owner === view)
            owner = null;
        return owner === null;
    }
    function take(view: Item) {
        owner = view;
        restart();
    }
}
