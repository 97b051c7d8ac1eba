pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// A screen that is a plain list.
Page {
    id: page

    readonly property var lists: ({
        claims: {
            intro: qsTr("You have 30 days to change your mind. Pack it up and bring it to any of our stores."),
            rows: [
                { glyph: "box", text: qsTr("Rain jacket"), detail: qsTr("Order %1, until 1 June").arg("M-1987") },
                { glyph: "box", text: qsTr("Wooden trains"), detail: qsTr("Order %1, until 11 May").arg("M-1902") },
                { glyph: "store", text: qsTr("Our stores"), opens: "map" }
            ]
        },
        vouchers: {
            intro: qsTr("Used up first when you pay."),
            rows: [
                { glyph: "gift", text: qsTr("From Mira"), detail: qsTr("Valid until December"), value: Stock.money(25) },
                { glyph: "gift", text: qsTr("Birthday card"), detail: qsTr("Valid until March"), value: Stock.money(10) }
            ]
        },
        locations: {
            intro: qsTr("Where we deliver to."),
            rows: [
                { glyph: "home", text: qsTr("Home"), detail: qsTr("12 Linden Street, Haifa") },
                { glyph: "store", text: qsTr("Work"), detail: qsTr("3 Harbour Road, Haifa") }
            ]
        },
        wallet: {
            intro: qsTr("How you pay."),
            rows: [
                { glyph: "card", text: qsTr("Card ending in 4417"), detail: qsTr("Expires 08/28, used first") },
                { glyph: "card", text: qsTr("Card ending in 9020"), detail: qsTr("Expires 01/27") },
                { glyph: "gift", text: qsTr("Gift cards"), opens: "vouchers" }
            ]
        },
        inbox: {
            intro: qsTr("Two are new."),
            rows: [
                { glyph: "truck", text: qsTr("Your parcel is on its way"), detail: qsTr("Order %1, today").arg("M-2041"), opens: "parcel" },
                { glyph: "tag", text: qsTr("Price drop on your wish list"), detail: qsTr("Canvas backpack, yesterday"), opens: "bookmarks" },
                { glyph: "star", text: qsTr("How is the rain jacket?"), detail: qsTr("See what others say"), opens: "opinions", params: { product: "rain-jacket" } }
            ]
        },
        consent: {
            intro: qsTr("What we keep, and what we do not."),
            rows: [
                { glyph: "shield", text: qsTr("Commands stay on this phone"), detail: qsTr("What you say is understood here; no recording is kept.") },
                { glyph: "mail", text: qsTr("Messages"), detail: qsTr("Only about your orders.") },
                { glyph: "user", text: qsTr("Your data"), detail: qsTr("Orders are kept for seven years, as the law asks.") }
            ]
        },
        hotline: {
            intro: qsTr("We are there from 8 to 20 o'clock."),
            rows: [
                { glyph: "phone", text: qsTr("Call"), detail: "+972 4 555 0100", url: "tel:+97245550100" },
                { glyph: "chat", text: qsTr("Live chat"), detail: qsTr("Answers within a minute"), opens: "conversation" },
                { glyph: "mail", text: qsTr("Write"), detail: "help@meadow.example", url: "mailto:help@meadow.example" }
            ]
        }
    })
    readonly property var list: lists[screenId] ?? lists.inbox

    Label {
        Layout.fillWidth: true
        text: page.list.intro
        soft: true
    }
    Card {
        padding: 10
        spacing: 0

        Repeater {
            model: page.list.rows

            ListRow {
                required property var modelData
                required property int index

                glyph: modelData.glyph
                text: modelData.text
                detail: modelData.detail ?? ""
                value: modelData.value ?? ""
                pressable: modelData.opens !== undefined || modelData.url !== undefined
                last: index === page.list.rows.length - 1
                onClicked: {
                    if (modelData.opens)
                        page.open(modelData.opens, modelData.params ?? {})
                    else
                        Qt.openUrlExternally(modelData.url)
                }
            }
        }
    }
}
