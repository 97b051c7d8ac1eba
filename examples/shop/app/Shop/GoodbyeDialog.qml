import QtQuick
import QtQuick.Layouts

/// Asks before it signs the customer out.
ColumnLayout {
    id: dialog

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: 72
        implicitHeight: 72
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
        Layout.fillWidth: true
        text: qsTr("Sign out?")
        role: Label.Role.Title
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Your cart and your wishes stay until you come back.")
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    PushButton {
        text: qsTr("Sign out")
        onClicked: {
            Basket.signedIn = false
            dialog.open("main", {})
        }
    }
    PushButton {
        quiet: true
        text: qsTr("Stay")
        onClicked: dialog.done()
    }
}
