import QtQuick
import QtQuick.Templates as T

/// A line of a list: a drawing, a title, a word below it, and something at its end.
T.AbstractButton {
    id: row

    property string glyph
    property string detail
    property string value
    property bool leads: false  ///< Whether it opens something.
    property bool last: false
    property Item trailing

    implicitHeight: Math.max(60, words.height + 24)
    Accessible.name: detail ? text + ", " + detail : text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    onTrailingChanged: if (trailing) trailing.parent = end

    background: Rectangle {
        color: row.down ? Theme.sunken : "transparent"
        radius: 12

        Rectangle {
            visible: !row.last
            x: ground.visible ? 56 : 4
            y: parent.height - 1
            width: parent.width - x
            height: 1
            color: Theme.line
        }
    }
    contentItem: Item {  // qmllint disable deferred-property-id
        Rectangle {
            id: ground

            visible: row.glyph !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: 40
            height: 40
            radius: 13
            color: Theme.accentSoft

            Glyph {
                anchors.centerIn: parent
                name: row.glyph
                size: 21
                color: Theme.accent
            }
        }
        Column {
            id: words

            anchors.left: ground.visible ? ground.right : parent.left
            anchors.leftMargin: ground.visible ? 14 : 6
            anchors.right: end.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                width: parent.width
                text: row.text
                horizontalAlignment: Text.AlignLeft  // in every language alike
                font.weight: Font.Medium
            }
            Label {
                width: parent.width
                visible: row.detail !== ""
                text: row.detail
                role: Label.Role.Small
                soft: true
            }
        }
        Row {
            id: end

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            Label {
                visible: row.value !== ""
                text: row.value
                soft: true
            }
            Glyph {
                visible: row.leads
                anchors.verticalCenter: parent.verticalCenter
                name: "forward"
                size: 16
                color: Theme.soft
            }
        }
    }
}
