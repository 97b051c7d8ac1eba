import QtQuick
import QtQuick.Layouts

/// A drawing with a word below it.
Pressable {
    id: shortcut

    property string glyph

    verticalPadding: 4
    horizontalPadding: 0
    corner: 18

    contentItem: ColumnLayout {
        spacing: 6

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 54
            implicitHeight: 54
            radius: 18
            color: shortcut.down ? Theme.sunken : Theme.surface
            border.color: Theme.line

            Glyph {
                anchors.centerIn: parent
                name: shortcut.glyph
                size: 24
                color: Theme.accent
            }
        }
        Label {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: shortcut.text
            read: false
            role: Label.Role.Small
        }
    }
}
