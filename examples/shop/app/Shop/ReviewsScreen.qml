pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

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
        ProductLine {
            room: page.innerWidth
            product: page.product
        }
        Flow {
            Layout.fillWidth: true
            spacing: 12
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("%1 of 5").arg(Stock.decimal(page.product.rating, 1)) + ", " + qsTr("%n reviews", "", page.product.reviews)

            Label {
                text: Stock.decimal(page.product.rating, 1)
                read: false
                font.pixelSize: 40 * Math.min(1.4, Theme.textScale)
                font.weight: Font.Bold
            }
            Column {
                spacing: 3

                Stars {
                    count: Math.round(page.product.rating)
                    Accessible.ignored: true
                }
                Label {
                    text: qsTr("%n reviews", "", page.product.reviews)
                    read: false
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

            spacing: 8

            Flow {
                Layout.fillWidth: true
                spacing: 8

                Label {
                    text: review.modelData.who
                    role: Label.Role.Body
                    font.weight: Font.DemiBold
                }
                Label {
                    text: review.modelData.when
                    role: Label.Role.Small
                    soft: true
                }
            }
            Stars { count: review.modelData.stars }
            Label {
                Layout.fillWidth: true
                text: review.modelData.text
                lineHeight: 1.3
            }
        }
    }
}
