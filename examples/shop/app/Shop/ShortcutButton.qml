import QtQuick
import QtQuick.Templates as T

/// A drawing with a word below it.
T.AbstractButton {
    id: shortcut

    property string glyph

    implicitHeight: 82
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    contentItem: Item {  // qmllint disable deferred-property-id
        Rectangle {
            id: ground

            anchors.horizontalCenter: parent.horizontalCenter
            width: 54
            height: 54
            radius: 18
            color: shortcut.down ? Theme.sunken : Theme.surface
            border.color: shortcut.visualFocus ? Theme.accent : Theme.line

            Glyph {
                anchors.centerIn: parent
                name: shortcut.glyph
                size: 24
                color: Theme.accent
            }
        }
        Label {
            anchors.top: ground.bottom
            anchors.topMargin: 7
            anchors.horizontalCenter: parent.horizontalCenter
            text: shortcut.text
            font.pixelSize: 12
            wrapMode: Text.NoWrap
        }
    }
}
