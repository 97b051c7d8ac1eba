pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The products that a navigation asks for.
Page {
    id: page

    property string sort: page.params.sort ?? "popular"

    widest: 960

    Label {
        Layout.fillWidth: true
        text: Stock.titleFor(page.params)
        role: Label.Role.Title
    }
    Flow {
        Layout.fillWidth: true
        spacing: 8

        Repeater {
            model: [
                { title: qsTr("Popular"), sort: "popular" },
                { title: qsTr("Newest"), sort: "newest" }
            ]

            Chip {
                required property var modelData

                text: modelData.title
                checkable: true
                autoExclusive: true
                checked: page.sort === modelData.sort
                onClicked: page.sort = modelData.sort
            }
        }
    }
    ProductGrid {
        room: page.innerWidth
        products: Stock.matching(Object.assign({}, page.params, { sort: page.sort }))
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
