import QtQuick
import Vantrel.ViewModels

/** The keys of one command. */
Shortcut {
    required property Command command
    property bool blocked: false

    sequences: command.sequences
    enabled: command.enabled && !blocked
    onActivated: command.trigger()
    onActivatedAmbiguously: command.trigger()
}
