pragma ComponentBehavior: Bound

import QtQuick

/** Shows its component only when it is wanted for longer than a blink. */
Lazy {
    id: root

    property bool wanted: false
    property int delay: 150

    active: false
    onWantedChanged: update()
    Component.onCompleted: update()

    function update() {
        if (wanted)
            timer.restart();
        else {
            timer.stop();
            active = false;
        }
    }

    Timer {
        id: timer
        interval: root.delay
        onTriggered: root.active = true
    }
}
