pragma Singleton
import QtQuick

/// The screens that are plain lists: what they say on top, their rows, and a button.
QtObject {
    readonly property var of: ({
        claims: {
            intro: qsTr("You have 30 days to change your mind."),
            rows: [
                { glyph: "box", text: qsTr("Rain jacket"), detail: qsTr("Order M-1987 · until 1 June"), leads: true },
                { glyph: "box", text: qsTr("Wooden trains"), detail: qsTr("Order M-1902 · until 11 May"), leads: true },
                { glyph: "return", text: qsTr("Refunds"), detail: qsTr("None under way"), value: "€0" }
            ],
            action: qsTr("Return a product")
        },
        vouchers: {
            intro: qsTr("Used up first when you pay."),
            rows: [
                { glyph: "gift", text: qsTr("From Mira"), detail: qsTr("Valid until December"), value: "€25" },
                { glyph: "gift", text: qsTr("Birthday card"), detail: qsTr("Valid until March"), value: "€10" }
            ],
            action: qsTr("Add a gift card")
        },
        locations: {
            intro: qsTr("Where we deliver to."),
            rows: [
                { glyph: "home", text: qsTr("Home"), detail: qsTr("12 Linden Street, Haifa"), leads: true },
                { glyph: "store", text: qsTr("Work"), detail: qsTr("3 Harbour Road, Haifa"), leads: true }
            ],
            action: qsTr("Add an address")
        },
        wallet: {
            intro: qsTr("How you pay."),
            rows: [
                { glyph: "card", text: qsTr("Card ending in 4417"), detail: qsTr("Expires 08/28 · used first"), leads: true },
                { glyph: "card", text: qsTr("Card ending in 9020"), detail: qsTr("Expires 01/27"), leads: true }
            ],
            action: qsTr("Add a card")
        },
        inbox: {
            intro: qsTr("Two are new."),
            rows: [
                { glyph: "truck", text: qsTr("Your parcel is on its way"), detail: qsTr("Order M-2041 · today"), opens: "parcel" },
                { glyph: "tag", text: qsTr("Price drop on your wish list"), detail: qsTr("Canvas backpack · yesterday"), opens: "bookmarks" },
                { glyph: "star", text: qsTr("How is the rain jacket?"), detail: qsTr("Write a review · last week"), opens: "opinions" }
            ]
        },
        consent: {
            intro: qsTr("What we keep, and what we do not."),
            rows: [
                { glyph: "shield", text: qsTr("Commands stay on this phone"), detail: qsTr("What you say is understood here; no recording is kept.") },
                { glyph: "mail", text: qsTr("Messages"), detail: qsTr("Only about your orders.") },
                { glyph: "user", text: qsTr("Your data"), detail: qsTr("Orders are kept for seven years, as the law asks.") }
            ],
            action: qsTr("Delete my data")
        },
        hotline: {
            intro: qsTr("We are there from 8 to 20 o'clock."),
            rows: [
                { glyph: "phone", text: qsTr("Call"), detail: "+972 4 555 0100", leads: true },
                { glyph: "chat", text: qsTr("Live chat"), detail: qsTr("Answers within a minute"), opens: "conversation" },
                { glyph: "mail", text: qsTr("Write"), detail: "help@meadow.example", leads: true }
            ]
        }
    })
}
