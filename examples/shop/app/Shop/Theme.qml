pragma Singleton
import QtQuick

/// The look of the shop: colours by day and by night, and the few sizes that everything keeps to.
QtObject {
    property bool dark: false

    readonly property color page: dark ? "#101312" : "#F6F4EF"
    readonly property color surface: dark ? "#1A1F1D" : "#FFFFFF"
    readonly property color sunken: dark ? "#242A28" : "#EDEAE3"
    readonly property color sheet: dark ? "#171C1A" : page
    readonly property color line: dark ? "#2B322F" : "#E4E0D7"
    readonly property color ink: dark ? "#F1F3F0" : "#1C211F"
    readonly property color soft: dark ? "#9BA5A0" : "#68706C"
    readonly property color accent: dark ? "#5CC99A" : "#0F6B4D"
    readonly property color accentInk: dark ? "#06281B" : "#FFFFFF"
    readonly property color accentSoft: dark ? "#1D3A2E" : "#DDEEE5"
    readonly property color warm: dark ? "#FF8A66" : "#D2481F"
    readonly property color warmSoft: dark ? "#40251C" : "#FBE5DC"
    readonly property color scrim: "#8C0B0F0D"

    readonly property int margin: 20
    readonly property int gap: 12
    readonly property int radius: 18
    readonly property int touch: 44

    readonly property int titleSize: 28
    readonly property int headingSize: 19
    readonly property int bodySize: 15
    readonly property int smallSize: 13

    /// How long a movement takes, in milliseconds; 0 for pictures and tests.
    property int pace: 220

    /// The ground behind a picture of hue `hue`, in [0, 1].
    function tint(hue: real) : color {
        return dark ? Qt.hsla(hue, 0.22, 0.20, 1) : Qt.hsla(hue, 0.45, 0.91, 1)
    }
}
