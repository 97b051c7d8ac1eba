import QtQuick

/// The way back, the title, and the way to the cart.
Item {
    id: bar

    property string title
    property bool canGoBack: false
    property bool muted: false

    signal back()
    signal cart()
    signal search()
    signal toggleMuted()

    implicitHeight: 60

    Row {
        id: start

        anchors.left: parent.left
        anchors.leftMargin: bar.canGoBack ? 8 : Theme.margin
        anchors.verticalCenter: parent.verticalCenter

        GlyphButton {
            visible: bar.canGoBack
            glyph: "back"
            text: qsTr("Back")
            onClicked: bar.back()
        }
        Glyph {
            visible: !bar.canGoBack
            anchors.verticalCenter: parent.verticalCenter
            name: "leaf"
            size: 26
            color: Theme.accent
        }
    }
    Label {
        anchors.left: start.right
        anchors.leftMargin: bar.canGoBack ? 2 : 8
        anchors.right: end.left
        anchors.verticalCenter: parent.verticalCenter
        text: bar.title
        role: Label.Role.Heading
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
        color: bar.canGoBack ? Theme.ink : Theme.accent
    }
    Row {
        id: end

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter

        GlyphButton {
            glyph: bar.muted ? "muted" : "speaker"
            text: bar.muted ? qsTr("Read answers aloud") : qsTr("Mute answers")
            onClicked: bar.toggleMuted()
        }
        GlyphButton {
            glyph: "search"
            text: qsTr("Search")
            onClicked: bar.search()
        }
        GlyphButton {
            glyph: "bag"
            text: qsTr("Cart, %n pieces", "", Basket.count)
            count: Basket.count
            onClicked: bar.cart()
        }
    }
}
