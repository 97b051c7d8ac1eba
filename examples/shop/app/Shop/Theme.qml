pragma Singleton
import QtQuick

/// The look of the shop: colours by day and by night, and the few sizes that everything keeps to.
QtObject {
    property bool dark: false
    property real textScale: 1
    property bool reducedMotion: false

    readonly property color page: dark ? "#101312" : "#F6F4EF"
    readonly property color surface: dark ? "#1A1F1D" : "#FFFFFF"
    readonly property color sunken: dark ? "#242A28" : "#EDEAE3"
    readonly property color line: dark ? "#2B322F" : "#E4E0D7"
    readonly property color edge: dark ? "#7C8681" : "#7B827E"
    readonly property color ink: dark ? "#F1F3F0" : "#1C211F"
    readonly property color soft: dark ? "#A7B1AC" : "#575F5B"
    readonly property color accent: dark ? "#5CC99A" : "#0F6B4D"
    readonly property color accentInk: dark ? "#06281B" : "#FFFFFF"
    readonly property color accentSoft: dark ? "#1D3A2E" : "#DDEEE5"
    readonly property color warm: dark ? "#FF8A66" : "#B83C13"
    readonly property color warmInk: dark ? "#2A0E05" : "#FFFFFF"
    readonly property color warmSoft: dark ? "#40251C" : "#FBE5DC"
    readonly property color banner: dark ? "#1F523E" : "#137453"
    readonly property color bannerInk: "#FFFFFF"
    readonly property color scrim: "#8C0B0F0D"

    readonly property int margin: 20
    readonly property int gap: 12
    readonly property int radius: 18
    readonly property int touch: 44
    readonly property int widest: 640  ///< The widest column of text on a large screen.

    readonly property real titleSize: 28 * textScale
    readonly property real headingSize: 19 * textScale
    readonly property real bodySize: 15 * textScale
    readonly property real smallSize: 13 * textScale

    /// How long a movement takes, in milliseconds; 0 for pictures and tests.
    property int pace: reducedMotion ? 0 : 220

    /// The ground behind a picture of hue `hue`, in [0, 1].
    function tint(hue: real) : color {
        return dark ? Qt.hsla(hue, 0.22, 0.20, 1) : Qt.hsla(hue, 0.45, 0.91, 1)
    }
}
