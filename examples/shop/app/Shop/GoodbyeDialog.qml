import QtQuick

/// Asks before it signs the customer out.
Column {
    id: dialog

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 72
        height: 72
        radius: 36
        color: Theme.warmSoft

        Glyph {
            anchors.centerIn: parent
            name: "logout"
            size: 30
            color: Theme.warm
        }
    }
    Label {
        width: parent.width
        text: qsTr("Sign out?")
        role: Label.Role.Title
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        width: parent.width
        text: qsTr("Your cart and your wishes stay until you come back.")
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    PushButton {
        width: parent.width
        text: qsTr("Sign out")
        onClicked: dialog.open("main", {})
    }
    PushButton {
        width: parent.width
        quiet: true
        text: qsTr("Stay")
        onClicked: dialog.done()
    }
}
