import QtQuick

/// Finds a product by its bar code.
Column {
    id: scanner

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Label {
        text: qsTr("Scan a bar code")
        role: Label.Role.Title
    }
    Rectangle {
        width: parent.width
        height: 260
        radius: 24
        color: "#0C0F0E"

        Row {
            anchors.centerIn: parent
            spacing: 5

            Repeater {
                model: [3, 6, 2, 4, 8, 2, 3, 6, 2, 5, 3, 7, 2, 4, 2, 6]

                Rectangle {
                    required property int modelData

                    width: modelData
                    height: 96
                    color: "#E9EDEA"
                    opacity: 0.85
                }
            }
        }
        Rectangle {
            anchors.centerIn: parent
            width: parent.width - 72
            height: 2
            color: "#FF6B4A"
        }
        Glyph {
            anchors.centerIn: parent
            name: "frame"
            size: 210
            color: "#FFFFFF"
        }
    }
    Label {
        width: parent.width
        text: qsTr("Hold the code within the frame.")
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    PushButton {
        width: parent.width
        quiet: true
        text: qsTr("Cancel")
        onClicked: scanner.done()
    }
}
