pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Quick entry in its two steps: the line, then what was understood of it. */
Item {
    id: root

    required property QuickTaskEntryViewModel quickEntry

    Lazy {
        anchors.fill: parent
        active: !root.quickEntry.isShowingConfirmation
        sourceComponent: QuickTaskEntryView {
            objectName: "quickTaskEntryView"
            quickEntry: root.quickEntry
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.quickEntry.isShowingConfirmation
        sourceComponent: TaskConfirmationView {
            objectName: "taskConfirmationView"
            form: root.quickEntry.confirmation
            onDismissed: root.quickEntry.backToInput()
        }
    }
}
