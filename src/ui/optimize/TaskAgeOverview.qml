import QtQuick
import Vantrel.ViewModels

/** What the grid below shows, and the choice of ages. */
Item {
    id: root

    required property OptimizeViewModel optimize

    readonly property int cardCount: optimize.grid.cardCount

    implicitHeight: legend.y + legend.height

    ThemedText {
        anchors.verticalCenter: filter.verticalCenter
        text: qsTr("Task Age Overview")
        font.pixelSize: Theme.large
        font.weight: Theme.headingWeight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    AppComboBox {
        id: filter
        objectName: "ageFilter"
        anchors.right: parent.right
        label: qsTr("Age filter")
        model: root.optimize.filters
        currentIndex: root.optimize.filter
        onActivated: index => root.optimize.filter = index
    }
    ThemedText {
        id: caption
        y: filter.height + Theme.laneGap
        text: qsTr("Tasks by Age: %1 tasks").arg(root.cardCount)
        color: Theme.secondaryText
    }
    ZoneLegend {
        id: legend

        readonly property bool fitsBeside: caption.width + width + 24 < root.width

        x: fitsBeside ? root.width - width : 0
        y: fitsBeside ? caption.y + (caption.height - height) / 2 : caption.y + caption.height + Theme.gap
        title: qsTr("Size key:")
        zones: root.optimize.zones
        swatch: 12
    }
}
