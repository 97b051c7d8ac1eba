pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The front of the shop.
Page {
    id: page

    widest: 960

    ColumnLayout {
        spacing: 2

        Label {
            Layout.fillWidth: true
            text: Basket.signedIn ? qsTr("Good morning, Noa") : qsTr("Good morning")
            soft: true
        }
        Label {
            Layout.fillWidth: true
            text: qsTr("What would you like to find today?")
            role: Label.Role.Title
        }
    }
    Pressable {
        id: campaign

        Layout.fillWidth: true
        padding: 20
        corner: 24
        implicitHeight: Math.max(148, implicitContentHeight + 40)
        text: qsTr("Spring promotion") + ", " + qsTr("Up to 25% off the new season")
        onClicked: page.present("seasonal_sheet")

        background: Rectangle {
            radius: 24
            color: Theme.banner
            opacity: campaign.down ? 0.85 : 1
        }
        contentItem: RowLayout {
            spacing: 12

            ColumnLayout {
                spacing: 5

                Label {
                    Layout.fillWidth: true
                    text: qsTr("Spring promotion")
                    read: false
                    role: Label.Role.Small
                    color: Theme.bannerInk
                    font.weight: Font.Medium
                }
                Label {
                    Layout.fillWidth: true
                    text: qsTr("Up to 25% off the new season")
                    read: false
                    color: Theme.bannerInk
                    font.pixelSize: 20 * Theme.textScale
                    font.weight: Font.Bold
                }
                Label {
                    Layout.fillWidth: true
                    text: qsTr("See what is new")
                    read: false
                    role: Label.Role.Small
                    color: Theme.bannerInk
                    font.weight: Font.DemiBold
                }
            }
            Rectangle {
                visible: campaign.width > 260 * Theme.textScale
                implicitWidth: 116
                implicitHeight: 116
                radius: 58
                color: "#24FFFFFF"

                Art {
                    anchors.centerIn: parent
                    side: 112
                    name: "dress"
                }
            }
        }
    }
    GridLayout {
        Layout.fillWidth: true
        columns: Math.max(1, Math.min(5, Math.floor(page.innerWidth / (66 * Math.max(1, Theme.textScale)))))
        columnSpacing: 0
        rowSpacing: 4

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

                Layout.fillWidth: true
                Layout.preferredWidth: 10
                Layout.alignment: Qt.AlignTop
                glyph: modelData.glyph
                text: modelData.title
                onClicked: page.open(modelData.screen, {})
            }
        }
    }
    Heading {
        room: page.innerWidth
        text: qsTr("Popular now")
        more: qsTr("See all")
        onClicked: page.open("results", { sort: "popular" })
    }
    ProductGrid {
        room: page.innerWidth
        products: Stock.products.slice(0, 6)
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
