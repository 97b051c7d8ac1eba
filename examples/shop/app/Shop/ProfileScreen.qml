pragma ComponentBehavior: Bound

import QtQuick

/// The customer and what belongs to her.
Page {
    id: page

    Column {
        width: parent.width
        spacing: 6
        topPadding: 8
        bottomPadding: 6

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 84
            height: 84
            radius: 42
            color: Theme.accent

            Label {
                anchors.centerIn: parent
                text: "NL"
                color: Theme.accentInk
                font.pixelSize: 30
                font.weight: Font.DemiBold
            }
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 6
            text: "Noa Levi"
            role: Label.Role.Heading
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "noa@example.com"
            soft: true
        }
    }
    Card {
        width: parent.width
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

                width: parent.width
                glyph: modelData.glyph
                text: modelData.title
                leads: true
                last: index === rows.count - 1
                onClicked: page.open(modelData.screen, {})
            }
        }
    }
    PushButton {
        width: parent.width
        quiet: true
        glyph: "logout"
        text: qsTr("Sign out")
        onClicked: page.present("goodbye_dialog")
    }
}
