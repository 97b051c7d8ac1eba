import QtQuick

/// A round button with a drawing on it, and maybe a count.
Pressable {
    id: button

    property string glyph
    property color color: Theme.ink
    property color ground: "transparent"
    property int count: 0

    implicitWidth: Theme.touch
    implicitHeight: Theme.touch
    corner: height / 2

    background: Rectangle {
        radius: height / 2
        color: button.down ? Theme.sunken : button.ground
    }
    Item {
        anchors.fill: parent

        Glyph {
            anchors.centerIn: parent
            name: button.glyph
            color: button.color
            mirror: button.mirrored && button.glyph === "back"
        }
        Rectangle {
            anchors { right: parent.right; top: parent.top; topMargin: 1 }
            visible: button.count > 0
            width: Math.max(18, number.implicitWidth + 9)
            height: 18
            radius: 9
            color: Theme.warm

            Text {
                id: number

                anchors.centerIn: parent
                text: button.count
                color: Theme.warmInk
                font { pixelSize: 11; weight: Font.DemiBold }
                Accessible.ignored: true
            }
        }
    }
}
