import QtQuick
import QtQuick.Layouts

/// A line of a list: a drawing, a title, words below it, and something at its end. A line that leads nowhere
/// can be read but not pressed.
Pressable {
    id: row

    property string glyph
    property string detail
    property string value
    property string endGlyph: pressable ? "forward" : ""
    property bool pressable: true
    property bool last: false
    /// In a narrow window large words take the drawing's room.
    readonly property bool isTight: Window.width < 170 * Theme.textScale
    readonly property bool hasGlyph: glyph !== "" && !isTight

    padding: 10
    leftPadding: 6
    rightPadding: 6
    implicitHeight: Math.max(60, implicitContentHeight + topPadding + bottomPadding)
    corner: 12
    enabled: pressable
    focusPolicy: pressable ? Qt.StrongFocus : Qt.NoFocus
    Layout.fillWidth: true
    Accessible.role: checkable ? Accessible.CheckBox : pressable ? Accessible.Button : Accessible.StaticText
    Accessible.name: Stock.told([text, detail, value])

    background: Rectangle {
        color: row.down ? Theme.sunken : "transparent"
        radius: 12

        Rectangle {
            anchors { left: parent.left; leftMargin: row.hasGlyph ? 56 : 6; right: parent.right; bottom: parent.bottom }
            visible: !row.last
            height: 1
            color: Theme.line
        }
    }
    contentItem: RowLayout {
        spacing: 14

        Rectangle {
            visible: row.hasGlyph
            implicitWidth: 40
            implicitHeight: 40
            radius: 13
            color: Theme.accentSoft

            Glyph {
                anchors.centerIn: parent
                name: row.glyph
                size: 21
                color: Theme.accent
            }
        }
        ColumnLayout {
            spacing: 2

            Label {
                Layout.fillWidth: true
                text: row.text
                read: false
                font.weight: Font.Medium
            }
            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: row.detail
                read: false
                role: Label.Role.Small
                soft: true
            }
        }
        Label {
            visible: text !== ""
            text: row.value
            read: false
            soft: true
        }
        Toggle {
            visible: row.checkable
            on: row.checked
        }
        Glyph {
            visible: row.endGlyph !== "" && !row.checkable
            name: row.endGlyph
            size: 16
            color: Theme.soft
            mirror: row.mirrored && row.endGlyph === "forward"
        }
    }
}
