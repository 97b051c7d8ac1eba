import QtQuick
import QtQuick.Templates as T

/// A round button with a drawing on it, and maybe a count.
T.AbstractButton {
    id: button

    property string glyph
    property color color: Theme.ink
    property color ground: "transparent"
    property int count: 0

    implicitWidth: Theme.touch
    implicitHeight: Theme.touch
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Accessible.ignored: !visible
    Keys.onReturnPressed: clicked()

    background: Rectangle {
        radius: height / 2
        color: button.down ? Theme.sunken : button.ground
        border.width: button.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    contentItem: Item {  // qmllint disable deferred-property-id
        Glyph {
            anchors.centerIn: parent
            name: button.glyph
            color: button.color
        }
        Rectangle {
            visible: button.count > 0
            x: parent.width - width
            y: 1
            width: Math.max(18, countLabel.implicitWidth + 9)
            height: 18
            radius: 9
            color: Theme.warm

            Label {
                id: countLabel

                anchors.centerIn: parent
                text: button.count
                color: Theme.dark ? "#2A0E05" : "#FFFFFF"
                font.pixelSize: 11
                font.weight: Font.DemiBold
            }
        }
    }
}
