import QtQuick
import QtQuick.Layouts

/// Says that there is nothing here, and where there is something.
ColumnLayout {
    id: empty

    property string glyph
    property string title
    property string detail
    property string action

    signal clicked()

    spacing: 10
    Layout.fillWidth: true
    Layout.topMargin: 24

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: 88
        implicitHeight: 88
        radius: 44
        color: Theme.accentSoft

        Glyph {
            anchors.centerIn: parent
            name: empty.glyph
            size: 38
            color: Theme.accent
        }
    }
    Label {
        Layout.fillWidth: true
        text: empty.title
        role: Label.Role.Heading
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        Layout.fillWidth: true
        visible: text !== ""
        text: empty.detail
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    PushButton {
        visible: text !== ""
        text: empty.action
        quiet: true
        onClicked: empty.clicked()
    }
}
