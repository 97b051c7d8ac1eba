import QtQuick

/// What the customer would like to have.
Page {
    id: page

    widest: 960

    Empty {
        visible: Basket.wishes.length === 0
        glyph: "heart"
        title: qsTr("No wishes yet")
        detail: qsTr("Tap the heart of a product to keep it here.")
    }
    ProductGrid {
        room: page.innerWidth
        products: Basket.wishes.map(id => Stock.find(id))
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
