import QtQuick

/// One product.
Page {
    id: page

    readonly property var product: Stock.find(page.params.product ?? "trail-running-shoe")
    readonly property bool wished: Basket.wishes.includes(product.id)

    Picture {
        width: parent.width
        height: 250
        radius: 26
        art: page.product.art
        hue: page.product.hue

        GlyphButton {
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: 12
            glyph: "heart"
            text: page.wished ? qsTr("Take off the wish list") : qsTr("Put on the wish list")
            color: page.wished ? Theme.warm : Theme.ink
            ground: Theme.surface
            onClicked: Basket.toggleWish(page.product.id)
        }
    }
    Item {
        width: parent.width
        implicitHeight: names.height

        Column {
            id: names

            width: parent.width - price.width - 16
            spacing: 2

            Label {
                text: page.product.brand
                soft: true
            }
            Label {
                width: parent.width
                text: page.product.name
                font.pixelSize: 24
                font.weight: Font.Bold
                font.letterSpacing: -0.4
            }
        }
        Column {
            id: price

            anchors.right: parent.right
            anchors.bottom: parent.bottom

            Label {
                visible: page.product.before > 0
                anchors.right: parent.right
                text: Stock.money(page.product.before)
                role: Label.Role.Small
                soft: true
                font.strikeout: true
            }
            Label {
                text: Stock.money(page.product.price)
                font.pixelSize: 24
                font.weight: Font.Bold
                color: page.product.before > 0 ? Theme.warm : Theme.ink
            }
        }
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0

        ListRow {
            width: parent.width
            glyph: "star"
            text: qsTr("%1 of 5").arg(page.product.rating)
            detail: qsTr("%1 reviews").arg(page.product.reviews)
            leads: true
            onClicked: page.open("opinions", { product: page.product.id })
        }
        ListRow {
            width: parent.width
            glyph: "ruler"
            text: qsTr("Size guide")
            leads: true
            last: true
            onClicked: page.present("fit_sheet")
        }
    }
    Label {
        width: parent.width
        text: page.product.about
        lineHeight: 1.35
    }
    PushButton {
        width: parent.width
        text: qsTr("Add to cart")
        glyph: "bag"
        onClicked: Basket.add(page.product.id, 1)
    }
}
