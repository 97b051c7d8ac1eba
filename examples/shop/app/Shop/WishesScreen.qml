import QtQuick

/// What the customer would like to have.
Page {
    id: page

    Empty {
        width: parent.width
        visible: Basket.wishes.length === 0
        glyph: "heart"
        title: qsTr("No wishes yet")
        detail: qsTr("Tap the heart of a product to keep it here.")
    }
    ProductGrid {
        width: parent.width
        products: Basket.wishes.map(id => Stock.find(id))
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
