import QtQuick

/// Says that there is nothing here, and where there is something.
Column {
    id: empty

    property string glyph
    property string title
    property string detail
    property string action

    signal clicked()

    topPadding: 80
    spacing: 10

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 88
        height: 88
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
        width: parent.width
        topPadding: 8
        text: empty.title
        role: Label.Role.Heading
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        width: parent.width
        text: empty.detail
        soft: true
        horizontalAlignment: Text.AlignHCenter
        bottomPadding: 10
    }
    PushButton {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: empty.action !== ""
        text: empty.action
        quiet: true
        onClicked: empty.clicked()
    }
}
