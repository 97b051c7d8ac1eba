import QtQuick
import QtQuick.Layouts

/// The one thing that a screen says first.
Rectangle {
    id: greeting

    property string small
    property string large
    property string detail
    property string glyph

    implicitHeight: row.implicitHeight + 40
    radius: 24
    color: Theme.accentSoft
    Layout.fillWidth: true
    Accessible.role: Accessible.Heading
    Accessible.name: Stock.told([small, large, detail])

    RowLayout {
        id: row

        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 20 }
        spacing: 12

        ColumnLayout {
            spacing: 3

            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: greeting.small
                read: false
                role: Label.Role.Small
                soft: true
            }
            Label {
                Layout.fillWidth: true
                text: greeting.large
                read: false
                font.pixelSize: 24 * Theme.textScale
                font.weight: Font.Bold
            }
            Label {
                Layout.fillWidth: true
                text: greeting.detail
                read: false
                soft: true
            }
        }
        Glyph {
            visible: greeting.width > 200 * Theme.textScale
            name: greeting.glyph
            size: 52
            color: Theme.accent
        }
    }
}
