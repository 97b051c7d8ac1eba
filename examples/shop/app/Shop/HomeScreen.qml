pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// The front of the shop.
Page {
    id: page

    spacing: 18

    Column {
        width: parent.width
        spacing: 2

        Label {
            text: qsTr("Good morning, Noa")
            soft: true
        }
        Label {
            width: parent.width
            text: qsTr("What would you like to find today?")
            role: Label.Role.Title
        }
    }
    T.AbstractButton {
        id: campaign

        width: parent.width
        implicitHeight: 148
        text: qsTr("Spring promotion")
        Accessible.name: text
        Accessible.onPressAction: clicked()
        onClicked: page.present("seasonal_sheet")

        background: Rectangle {
            radius: 24
            color: Theme.dark ? "#1F523E" : "#137453"
            opacity: campaign.down ? 0.85 : 1
        }
        contentItem: Item {
            Rectangle {
                anchors.right: parent.right
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                width: 124
                height: 124
                radius: 62
                color: "#FFFFFF"
                opacity: 0.14
            }
            Art {
                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                side: 120
                name: "dress"
            }
            Column {
                anchors.left: parent.left
                anchors.leftMargin: 20
                anchors.verticalCenter: parent.verticalCenter
                spacing: 5

                Label {
                    text: qsTr("Spring promotion")
                    role: Label.Role.Small
                    color: "#CDEBDD"
                    font.weight: Font.Medium
                }
                Label {
                    width: 175
                    text: qsTr("Up to 25 % off the new season")
                    color: "#FFFFFF"
                    font.pixelSize: 20
                    font.weight: Font.Bold
                }
                Label {
                    text: qsTr("See what is new")
                    role: Label.Role.Small
                    color: "#FFFFFF"
                    font.weight: Font.DemiBold
                    topPadding: 4
                }
            }
        }
    }
    Row {
        width: parent.width

        Repeater {
            model: [
                { glyph: "grid", title: qsTr("Categories"), screen: "catalog" },
                { glyph: "box", title: qsTr("Orders"), screen: "purchases" },
                { glyph: "heart", title: qsTr("Wish list"), screen: "bookmarks" },
                { glyph: "user", title: qsTr("Profile"), screen: "member" },
                { glyph: "help", title: qsTr("Help"), screen: "faq" }
            ]

            ShortcutButton {
                required property var modelData

                width: (page.width - 2 * Theme.margin) / 5
                glyph: modelData.glyph
                text: modelData.title
                onClicked: page.open(modelData.screen, {})
            }
        }
    }
    Heading {
        width: parent.width
        text: qsTr("Popular now")
        more: qsTr("See all")
        onClicked: page.open("results", { sort: "popular" })
    }
    ProductGrid {
        width: parent.width
        products: Stock.products.slice(0, 6)
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
