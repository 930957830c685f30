import QtQuick

/** The reference of the complete board: as many visible cards of the same make, with no model and no database. */
Window {
    id: root

    width: 1280
    height: 820
    visible: true
    color: "#F5F6F8"

    property int cardsMade: 0

    Rectangle {
        width: parent.width
        height: 48
        color: "white"
        Row {
            anchors.centerIn: parent
            spacing: 6
            Repeater {
                model: 3
                Rectangle { width: 32; height: 32; radius: 8; color: "#ECEEF2" }
            }
        }
    }
    Column {
        x: 14
        y: 96
        spacing: 12
        Repeater {
            model: 2
            Rectangle {
                width: 1252
                height: 336
                radius: 12
                color: "white"
                Row {
                    x: 11
                    y: 40
                    spacing: 12
                    Repeater {
                        model: 5
                        ListView {
                            width: 236
                            height: 288
                            clip: true
                            spacing: 8
                            reuseItems: true
                            model: 200
                            delegate: Item {
                                required property int index
                                width: 236
                                height: 78
                                Component.onCompleted: ++root.cardsMade
                                Rectangle { y: 1.5; width: parent.width; height: parent.height; radius: 9; color: "#14101828" }
                                Rectangle { anchors.fill: parent; radius: 9; color: "white"; border.width: 1; border.color: "#E1E4EA" }
                                Column {
                                    x: 10
                                    y: 10
                                    width: parent.width - 20
                                    spacing: 5
                                    Text { width: parent.width; text: "Task number " + parent.parent.index + " with a few words"; font.family: "Inter"; font.pixelSize: 13; wrapMode: Text.Wrap; maximumLineCount: 2; elide: Text.ElideRight }
                                    Row {
                                        spacing: 4
                                        Rectangle { width: 14; height: 14; radius: 3; color: "#A6AEBB" }
                                        Text { text: "Website"; font.family: "Inter"; font.pixelSize: 12; color: "#5B6370" }
                                    }
                                    Row {
                                        spacing: 6
                                        Rectangle { width: 14; height: 14; radius: 3; color: "#A6AEBB" }
                                        Rectangle { width: 46; height: 18; radius: 6; color: "#F0E9FC"; Text { anchors.centerIn: parent; text: "#code"; font.family: "Inter"; font.pixelSize: 11; color: "#7A45D8" } }
                                        Text { text: "12 days"; font.family: "Inter"; font.pixelSize: 11; color: "#6F7785" }
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
