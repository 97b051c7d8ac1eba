import QtQuick
import QtQuick.Layouts

/// One product.
Page {
    id: page

    readonly property var product: Stock.find(page.params.product ?? "trail-running-shoe")
    readonly property bool wished: Basket.wishes.includes(product.id)
    readonly property int inCart: Basket.countOf(product.id)

    Picture {
        Layout.fillWidth: true
        implicitHeight: Math.min(250, page.height * 0.5)
        radius: 26
        art: page.product.art
        hue: page.product.hue

        GlyphButton {
            anchors { right: parent.right; top: parent.top; margins: 12 }
            glyph: "heart"
            text: page.wished ? qsTr("Take %1 off the wish list").arg(page.product.name)
                              : qsTr("Put %1 on the wish list").arg(page.product.name)
            color: page.wished ? Theme.warm : Theme.ink
            ground: Theme.surface
            onClicked: Basket.toggleWish(page.product.id)
        }
    }
    ColumnLayout {
        spacing: 2

        Label {
            Layout.fillWidth: true
            text: page.product.brand
            soft: true
        }
        Label {
            Layout.fillWidth: true
            text: page.product.name
            role: Label.Role.Title
            font.pixelSize: 24 * Theme.textScale
        }
        Flow {
            Layout.fillWidth: true
            spacing: 10

            Label {
                id: price

                text: Stock.money(page.product.price)
                font.pixelSize: 24 * Theme.textScale
                font.weight: Font.Bold
                color: page.product.before > 0 ? Theme.warm : Theme.ink
            }
            Label {
                visible: page.product.before > 0
                height: price.height
                verticalAlignment: Text.AlignVCenter
                text: Stock.money(page.product.before)
                soft: true
                font.strikeout: true
                Accessible.name: qsTr("before %1").arg(text)
            }
        }
    }
    PushButton {
        objectName: "addToCart"
        text: qsTr("Add to cart")
        glyph: "bag"
        Accessible.name: qsTr("Add %1 to the cart").arg(page.product.name)
        onClicked: Basket.add(page.product.id, 1)
    }
    Label {
        Layout.fillWidth: true
        visible: page.inCart > 0
        text: qsTr("%n in your cart", "", page.inCart)
        horizontalAlignment: Text.AlignHCenter
        soft: true
    }
    Card {
        padding: 10
        spacing: 0

        ListRow {
            glyph: "star"
            text: qsTr("%1 of 5").arg(Stock.decimal(page.product.rating, 1))
            detail: qsTr("%n reviews", "", page.product.reviews)
            onClicked: page.open("opinions", { product: page.product.id })
        }
        ListRow {
            glyph: "ruler"
            text: qsTr("Size guide")
            value: Basket.shoeSize > 0 ? qsTr("Yours: %1").arg(Basket.shoeSize) : ""
            last: true
            onClicked: page.present("fit_sheet")
        }
    }
    Label {
        Layout.fillWidth: true
        text: page.product.about
        lineHeight: 1.35
    }
}
