pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The bar at the top: the name, what is done most often, the gauge, and the menu of everything. */
FocusScope {
    id: root

    required property AppViewModel app

    readonly property Command refreshCommand: app.commands.command("refresh")
    readonly property Command focusCommand: app.commands.command("toggleTaskFocus")
    readonly property Command addCommand: app.commands.command("quickAdd")
    readonly property Command menuCommand: app.commands.command("menu")

    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Toolbar")

    /** Made when it is first wanted: with all its commands it costs as much as the whole bar. */
    property CommandMenu menu: null

    function openMenu() {
        if (!menu)
            menu = menuMaker.createObject(root);
        menu.popup(menuButton, menuButton.width - menu.implicitWidth, menuButton.height + 4);
        menu.currentIndex = -1;
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }

    ThemedText {
        x: Theme.windowPadding + 6
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Vantrel")
        font.pixelSize: Theme.medium
        font.weight: Theme.headingWeight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Row {
        anchors.centerIn: parent
        spacing: 6

        ToolbarButton {
            objectName: "refreshButton"
            focus: true
            symbol: "arrow.clockwise"
            text: qsTr("Refresh tasks")
            hint: qsTr("Refresh Tasks") + "  " + root.refreshCommand.keys
            Accessible.description: qsTr("Loads tasks from all enabled sources")
            onClicked: root.app.taskList.refresh()
        }
        ToolbarButton {
            objectName: "focusButton"
            visible: root.focusCommand.enabled
            symbol: root.app.taskFocusActive ? "eye.fill" : "eye"
            active: root.app.taskFocusActive
            text: qsTr("Task Focus")
            hint: (root.app.taskFocusActive ? qsTr("Exit Task Focus Mode") : qsTr("Focus on Selected Task"))
                  + "  " + root.focusCommand.keys
            Accessible.description: qsTr("Toggle focus mode for the selected task")
            onClicked: root.focusCommand.trigger()
        }
        ToolbarButton {
            objectName: "addButton"
            symbol: "plus"
            text: qsTr("Quick Add Task")
            hint: qsTr("Quick Add Task") + "  " + root.addCommand.keys
            onClicked: root.addCommand.trigger()
        }
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.windowPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Lazy {
            anchors.verticalCenter: parent.verticalCenter
            active: root.app.gauge.enabled && root.width > 720
            sourceComponent: WIPGaugeView {
                objectName: "gauge"
                gauge: root.app.gauge
            }
        }
        ToolbarButton {
            id: menuButton
            objectName: "menuButton"
            symbol: "line.3.horizontal"
            text: qsTr("Menu")
            hint: qsTr("All commands") + "  " + root.menuCommand.keys
            active: root.menu?.visible ?? false
            onClicked: root.menuCommand.trigger()
        }
    }

    Component {
        id: menuMaker

        CommandMenu {
            commands: root.app.commands
        }
    }
}
