import QtQuick
import QtQuick.Layouts

/// A wide button with a word on it.
Pressable {
    id: button

    property bool quiet: false
    property string glyph
    /// The width of the words in one line. The text's own width changes with the button's.
    readonly property real oneLine: Math.ceil(measure.advanceWidth) + 1

    padding: 12
    leftPadding: 20
    rightPadding: 20
    implicitWidth: oneLine + leftPadding + rightPadding + (picture.visible ? 28 : 0)
    implicitHeight: Math.max(50, words.implicitHeight + topPadding + bottomPadding)
    corner: Math.min(height / 2, 25)
    Layout.fillWidth: true

    TextMetrics {
        id: measure

        font: words.font
        text: button.text
    }
    background: Rectangle {
        radius: button.corner
        color: button.quiet ? Theme.accentSoft : Theme.accent
        opacity: button.down ? 0.8 : 1
    }
    Item {
        anchors { fill: parent; leftMargin: button.leftPadding; rightMargin: button.rightPadding }

        Glyph {
            id: picture

            anchors { right: words.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            visible: button.glyph !== ""
            name: button.glyph
            size: 20
            color: words.color
        }
        Label {
            id: words

            anchors { centerIn: parent; horizontalCenterOffset: picture.visible ? (button.mirrored ? -14 : 14) : 0 }
            width: Math.min(button.oneLine, parent.width - (picture.visible ? 28 : 0))
            horizontalAlignment: Text.AlignHCenter
            text: button.text
            read: false
            color: button.quiet ? Theme.accent : Theme.accentInk
            font.weight: Font.DemiBold
        }
    }
}
