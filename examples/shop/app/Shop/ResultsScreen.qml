pragma ComponentBehavior: Bound

import QtQuick

/// The products that a navigation asks for.
Page {
    id: page

    Label {
        width: parent.width
        text: Stock.titleFor(page.params)
        role: Label.Role.Title
    }
    Row {
        spacing: 8

        Repeater {
            model: [
                { title: qsTr("Popular"), sort: "popular" },
                { title: qsTr("Newest"), sort: "newest" }
            ]

            Chip {
                required property var modelData

                text: modelData.title
                checked: (page.params.sort ?? "popular") === modelData.sort
                onClicked: page.params = Object.assign({}, page.params, { sort: modelData.sort })
            }
        }
    }
    ProductGrid {
        width: parent.width
        products: Stock.matching(page.params)
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
