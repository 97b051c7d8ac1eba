import QtQuick
import QtQuick.Templates as T

/// A wide button with a word on it.
T.AbstractButton {
    id: button

    property bool quiet: false
    property string glyph

    implicitHeight: 50
    implicitWidth: face.width + 40
    opacity: enabled ? 1 : 0.45
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    background: Rectangle {
        radius: height / 2
        color: button.quiet ? Theme.accentSoft : Theme.accent
        opacity: button.down ? 0.8 : 1
        border.width: button.visualFocus ? 2 : 0
        border.color: Theme.ink
    }
    contentItem: Item {  // qmllint disable deferred-property-id
        Row {
            id: face

            anchors.centerIn: parent
            spacing: 8

            Glyph {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.glyph !== ""
                name: button.glyph
                size: 20
                color: button.quiet ? Theme.accent : Theme.accentInk
            }
            Label {
                text: button.text
                color: button.quiet ? Theme.accent : Theme.accentInk
                font.weight: Font.DemiBold
            }
        }
    }
}
