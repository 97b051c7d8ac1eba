import QtQuick
import QtQuick.Layouts

/// The way back, the title, and the way to the cart.
RowLayout {
    id: bar

    property string title
    property bool canGoBack: false
    property bool muted: false
    readonly property bool isNarrow: width < 340 * Math.min(1.4, Theme.textScale)

    signal back()
    signal cart()
    signal search()
    signal toggleMuted()

    spacing: 4

    GlyphButton {
        objectName: "back"
        visible: bar.canGoBack
        glyph: "back"
        text: qsTr("Back")
        onClicked: bar.back()
    }
    Glyph {
        visible: !bar.canGoBack
        Layout.leftMargin: 8
        name: "leaf"
        size: 26
        color: Theme.accent
    }
    Label {
        Layout.fillWidth: true
        Layout.topMargin: 6
        Layout.bottomMargin: 6
        text: bar.title
        role: Label.Role.Heading
        font.pixelSize: 19 * Math.min(1.4, Theme.textScale)
        color: bar.canGoBack ? Theme.ink : Theme.accent
    }
    GlyphButton {
        visible: !bar.isNarrow
        glyph: bar.muted ? "muted" : "speaker"
        text: bar.muted ? qsTr("Read answers aloud") : qsTr("Mute answers")
        onClicked: bar.toggleMuted()
    }
    GlyphButton {
        objectName: "search"
        glyph: "search"
        text: qsTr("Search")
        onClicked: bar.search()
    }
    GlyphButton {
        objectName: "cart"
        glyph: "bag"
        text: qsTr("Cart, %n pieces", "", Basket.count)
        count: Basket.count
        onClicked: bar.cart()
    }
}
