pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The customer and what belongs to her.
Page {
    id: page

    ColumnLayout {
        Layout.topMargin: 8
        spacing: 6

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 84
            implicitHeight: 84
            radius: 42
            color: Theme.accent

            Glyph {
                anchors.centerIn: parent
                name: "user"
                size: 40
                color: Theme.accentInk
            }
        }
        Label {
            Layout.fillWidth: true
            text: Basket.signedIn ? "Noa Levi" : qsTr("You are signed out")
            role: Label.Role.Heading
            horizontalAlignment: Text.AlignHCenter
        }
        Label {
            Layout.fillWidth: true
            visible: Basket.signedIn
            text: "noa@example.com"
            soft: true
            horizontalAlignment: Text.AlignHCenter
        }
    }
    Card {
        padding: 10
        spacing: 0

        Repeater {
            id: rows

            model: [
                { glyph: "box", title: qsTr("Orders"), screen: "purchases" },
                { glyph: "pin", title: qsTr("Addresses"), screen: "locations" },
                { glyph: "card", title: qsTr("Payment methods"), screen: "wallet" },
                { glyph: "gift", title: qsTr("Gift cards"), screen: "vouchers" },
                { glyph: "bell", title: qsTr("Notifications"), screen: "inbox" },
                { glyph: "gear", title: qsTr("Settings"), screen: "setup" }
            ]

            ListRow {
                required property var modelData
                required property int index

                glyph: modelData.glyph
                text: modelData.title
                last: index === rows.count - 1
                onClicked: page.open(modelData.screen, {})
            }
        }
    }
    PushButton {
        quiet: true
        glyph: "logout"
        text: Basket.signedIn ? qsTr("Sign out") : qsTr("Sign in")
        onClicked: {
            if (Basket.signedIn)
                page.present("goodbye_dialog")
            else
                Basket.signedIn = true
        }
    }
}
