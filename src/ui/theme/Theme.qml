pragma Singleton

import QtQuick

/** Every colour, size and duration of the interface, in two schemes. The window sets `dark` and `reducedMotion`. */
QtObject {
    property bool dark: false
    property bool reducedMotion: false

    // Grounds
    readonly property color window: dark ? "#15171B" : "#F5F6F8"
    readonly property color rail: dark ? "#1B1E23" : "#ECEEF2"
    readonly property color surface: dark ? "#1E2126" : "#FFFFFF"
    readonly property color cell: dark ? "#1A1D22" : "#F0F2F5"
    readonly property color card: dark ? "#262A31" : "#FFFFFF"
    readonly property color cardHover: dark ? "#2C313A" : "#FAFBFD"
    readonly property color field: dark ? "#15171B" : "#FFFFFF"
    readonly property color hover: dark ? "#2B3038" : "#E9ECF1"
    readonly property color press: dark ? "#343A44" : "#DEE2E9"
    readonly property color scrim: dark ? "#80000000" : "#66101418"

    // Lines
    readonly property color line: dark ? "#2E333B" : "#E1E4EA"
    readonly property color strongLine: dark ? "#3A404A" : "#D3D8E0"

    // Text
    readonly property color text: dark ? "#E9ECF1" : "#1B1F26"
    readonly property color secondaryText: dark ? "#A6AEBB" : "#5B6370"
    readonly property color faintText: dark ? "#959EAD" : "#626A77"
    readonly property color inkOnAccent: dark ? "#0E1420" : "#FFFFFF"

    // Meaning: the plain colours for symbols and lines, those called text for letters, also on a tint
    readonly property color accent: dark ? "#6E9BFF" : "#2F6BED"
    readonly property color accentTint: dark ? "#24304A" : "#E6EEFE"
    readonly property color red: dark ? "#FF7B7B" : "#DC2F2F"
    readonly property color redTint: dark ? "#40272A" : "#FDEAEA"
    readonly property color redLine: dark ? "#8A4448" : "#F0A3A3"
    readonly property color amber: dark ? "#F4B04F" : "#B86A04"
    readonly property color amberTint: dark ? "#3B3020" : "#FDF1DD"
    readonly property color green: dark ? "#5BCB83" : "#15803D"
    readonly property color greenTint: dark ? "#20352A" : "#E3F4E8"
    readonly property color violet: dark ? "#B594F7" : "#7A45D8"
    readonly property color violetTint: dark ? "#30284A" : "#F0E9FC"
    readonly property color accentText: dark ? "#6E9BFF" : "#2459CC"
    readonly property color redText: dark ? "#FF7B7B" : "#C22222"
    readonly property color amberText: dark ? "#F4B04F" : "#945505"
    readonly property color greenText: dark ? "#5BCB83" : "#13713A"
    readonly property color violetText: dark ? "#B594F7" : "#7A45D8"
    readonly property color flagStripe: "#E8930C"

    // Small dark grounds that lie above everything: hints, the sign that something is being saved
    readonly property color note: dark ? "#343A44" : "#2A2F38"
    readonly property color inkOnNote: dark ? "#E9ECF1" : "#FFFFFF"

    // The gauge looks the same in both schemes.
    readonly property color gaugeGround: "#2C3E50"
    readonly property color gaugeText: "#FFFFFF"
    readonly property color gaugeTextShadow: "#80000000"

    // Charts: the sources, and the zones of age by their raw values
    readonly property color accentWash: Qt.alpha(accent, 0.1)
    readonly property color omniFocus: "#8B5CF6"
    readonly property color reminders: dark ? "#F59E0B" : "#D97B06"
    readonly property color remindersWash: Qt.alpha("#F59E0B", 0.35)
    readonly property var ageZones: ({fresh: "#24A35A", aging: dark ? "#D9A90E" : "#CE9B06", stale: "#E0761A", ancient: "#DC2F2F"})

    // Shadows are painted: a few translucent rectangles, no effects.
    readonly property color shadow: dark ? "#50000000" : "#14101828"
    readonly property color softShadow: dark ? "#10000000" : "#04101828"
    readonly property color liftedShadow: dark ? "#80000000" : "#2A101828"

    // Type
    readonly property string fontFamily: "Inter"
    readonly property string emojiFamily: "Noto Color Emoji"
    readonly property int tiny: 11
    readonly property int small: 12
    readonly property int body: 13
    readonly property int medium: 14
    readonly property int large: 16
    readonly property int huge: 20
    readonly property int figure: 24
    readonly property int regularWeight: Font.Normal
    readonly property int titleWeight: Font.Medium
    readonly property int headingWeight: Font.DemiBold

    // Space
    readonly property int unit: 4
    readonly property int gap: 8
    readonly property int laneGap: 12
    readonly property int windowPadding: 14
    readonly property int cardPadding: 10

    // Shape
    readonly property int windowPartRadius: 12
    readonly property int cardRadius: 9
    readonly property int controlRadius: 8
    readonly property int chipRadius: 6
    readonly property int ringWidth: 2

    // Parts
    readonly property int toolbarHeight: 48
    readonly property int railWidth: 92
    readonly property int minimumColumnWidth: 190
    readonly property int controlHeight: 32
    readonly property int toolButtonSize: 32
    readonly property int menuItemHeight: 30
    readonly property int sheetPadding: 20
    readonly property int iconSize: 18
    readonly property int smallIconSize: 14

    // Motion
    readonly property int quick: reducedMotion ? 0 : 120
    readonly property int move: reducedMotion ? 0 : 200
    readonly property int fade: reducedMotion ? 0 : 500

    /** `color` as a ground for text of the same colour, and as that text. */
    function tinted(color: color): color {
        return Qt.alpha(color, 0.16);
    }
    function legible(color: color): color {
        return dark ? Qt.lighter(color, 1.35) : Qt.darker(color, 2);
    }
}
