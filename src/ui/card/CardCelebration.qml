pragma ComponentBehavior: Bound

import QtQuick

/** A card is glad that its task is done: one of five short plays over the card, which then goes. */
Item {
    id: root

    required property KanbanCard card
    required property int type

    readonly property string taskId: card.card.id
    property bool showsParticles: false

    anchors.fill: parent
    Accessible.ignored: true
    // The card may come to show another task meanwhile.
    onTaskIdChanged: if (play.running) end()
    Component.onCompleted: play.start()

    function throwParticles() {
        showsParticles = true;
    }
    function end() {
        play.stop();
        card.scale = 1;
        card.rotation = 0;
        destroy();
    }

    Rectangle {
        id: tint
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.green
        opacity: 0
    }
    Rectangle {
        id: glow
        anchors.fill: parent
        anchors.margins: -3
        radius: Theme.cardRadius + 3
        color: "transparent"
        border.width: 4
        border.color: Theme.green
        opacity: 0
    }
    SymbolImage {
        id: checkmark
        anchors.centerIn: parent
        symbol: "checkmark.circle.fill"
        size: 40
        color: Theme.green
        opacity: 0
        scale: 0
    }
    Repeater {
        model: root.showsParticles ? 18 : 0

        Rectangle {
            id: particle

            readonly property real angle: Math.random() * 2 * Math.PI
            readonly property real distance: 20 + Math.random() * 40
            property real progress

            x: root.width / 2 + Math.cos(angle) * distance * progress - width / 2
            y: root.height / 2 + Math.sin(angle) * distance * progress - height / 2
            width: 7
            height: 7
            radius: 3.5
            color: Qt.hsva(Math.random(), 0.8, 0.95, 1)
            opacity: 1 - progress

            NumberAnimation on progress {
                to: 1
                duration: 600
                easing.type: Easing.OutQuad
            }
        }
    }

    component Step: NumberAnimation {
        duration: 300
        easing.type: Easing.InOutQuad
    }
    /** Overshoots a little, as a spring does. */
    component Spring: NumberAnimation {
        duration: 300
        easing.type: Easing.OutBack
    }

    SequentialAnimation {
        id: play

        ScriptAction {
            script: [spinAndPulse, bounceAndGlow, particleBurst, checkmarkConfetti, glowPulse][root.type].start()
        }
        PauseAnimation { duration: 1600 }
        ScriptAction { script: root.end() }
    }
    ParallelAnimation {
        id: spinAndPulse
        Step { target: root.card; property: "rotation"; from: 0; to: 360; duration: 500 }
        SequentialAnimation {
            Step { target: root.card; property: "scale"; to: 1.06 }
            Step { target: root.card; property: "scale"; to: 1 }
        }
    }
    SequentialAnimation {
        id: bounceAndGlow
        ParallelAnimation {
            Spring { target: root.card; property: "scale"; to: 1.06 }
            Step { target: glow; property: "opacity"; to: 0.8 }
        }
        ParallelAnimation {
            Spring { target: root.card; property: "scale"; to: 1 }
            Step { target: glow; property: "opacity"; to: 0 }
        }
    }
    SequentialAnimation {
        id: particleBurst
        ScriptAction { script: root.throwParticles() }
        Spring { target: tint; property: "opacity"; to: 0.4 }
        PauseAnimation { duration: 200 }
        Step { target: tint; property: "opacity"; to: 0 }
    }
    SequentialAnimation {
        id: checkmarkConfetti
        ParallelAnimation {
            Step { target: checkmark; property: "opacity"; to: 1; duration: 120 }
            Spring { target: checkmark; property: "scale"; to: 1.2 }
        }
        ScriptAction { script: root.throwParticles() }
        Step { target: checkmark; property: "scale"; to: 1 }
        PauseAnimation { duration: 300 }
        ParallelAnimation {
            Step { target: checkmark; property: "opacity"; to: 0 }
            Step { target: checkmark; property: "scale"; to: 0.8 }
        }
    }
    SequentialAnimation {
        id: glowPulse
        SequentialAnimation {
            loops: 2
            ParallelAnimation {
                Step { target: glow; property: "opacity"; to: 0.9 }
                Step { target: root.card; property: "scale"; to: 1.03 }
            }
            ParallelAnimation {
                Step { target: glow; property: "opacity"; to: 0.2 }
                Step { target: root.card; property: "scale"; to: 1 }
            }
        }
        Step { target: glow; property: "opacity"; to: 0 }
    }
}
