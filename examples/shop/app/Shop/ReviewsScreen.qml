import QtQuick

/// What customers say about a product.
Page {
    id: page

    readonly property var product: Stock.find(page.params.product ?? "trail-running-shoe")
    readonly property var reviews: [
        { who: "Dana", stars: 5, when: qsTr("2 days ago"), text: qsTr("Wore it the whole weekend and forgot that it was new. Exactly as pictured.") },
        { who: "Yoav", stars: 4, when: qsTr("Last week"), text: qsTr("Well made. Runs a little small: take half a size more.") },
        { who: "Mira", stars: 5, when: qsTr("In April"), text: qsTr("The second one I buy. The first has survived two winters.") }
    ]

    Card {
        width: parent.width

        ProductLine {
            width: parent.width
            product: page.product
        }
        Row {
            spacing: 12

            Label {
                text: page.product.rating
                font.pixelSize: 40
                font.weight: Font.Bold
                font.letterSpacing: -1
            }
            Column {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 3

                Stars { count: Math.round(page.product.rating) }
                Label {
                    text: qsTr("%1 reviews").arg(page.product.reviews)
                    role: Label.Role.Small
                    soft: true
                }
            }
        }
    }
    Repeater {
        model: page.reviews

        Card {
            id: review

            required property var modelData

            width: parent.width
            spacing: 8

            Item {
                width: parent.width
                height: 22

                Label {
                    text: review.modelData.who
                    font.weight: Font.DemiBold
                }
                Label {
                    anchors.right: parent.right
                    text: review.modelData.when
                    role: Label.Role.Small
                    soft: true
                }
            }
            Stars { count: review.modelData.stars }
            Label {
                width: parent.width
                text: review.modelData.text
                lineHeight: 1.3
            }
        }
    }
}
