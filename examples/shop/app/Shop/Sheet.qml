import QtQuick

/// Comes up from below, over everything; a tap beside it lets it go.
Item {
    id: sheet

    default property alias content: column.data
    property bool shown: false
    property int margin: Theme.margin

    signal dismissed()

    anchors.fill: parent
    visible: scrim.opacity > 0

    Rectangle {
        id: scrim

        anchors.fill: parent
        color: Theme.scrim
        opacity: sheet.shown ? 1 : 0

        Behavior on opacity {
            enabled: Theme.pace > 0

            NumberAnimation { duration: Theme.pace }
        }
        MouseArea {
            anchors.fill: parent
            onClicked: sheet.dismissed()
        }
    }
    Rectangle {
        id: paper

        y: sheet.shown ? parent.height - height + 28 : parent.height
        width: parent.width
        height: column.height + 78
        radius: 28
        color: Theme.sheet
        border.color: Theme.dark ? Theme.line : Theme.sheet

        Behavior on y {
            enabled: Theme.pace > 0

            NumberAnimation {
                duration: Theme.pace
                easing.type: Easing.OutCubic
            }
        }
        // What is tapped on the paper does not reach the scrim.
        MouseArea { anchors.fill: parent }
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 10
            width: 38
            height: 5
            radius: 2.5
            color: Theme.line
        }
        Column {
            id: column

            x: sheet.margin
            y: 30
            width: parent.width - 2 * sheet.margin
            spacing: 16
        }
    }
}
