import QtQuick
import Zelvora.Private

/// A choice's title at the leading edge and its confidence at the trailing one.
Item {
    id: root

    property string title
    property string confidenceText
    property Theme theme

    implicitHeight: Math.max(name.implicitHeight, number.implicitHeight)

    Text {
        id: name

        objectName: "choiceTitle"
        anchors {
            left: parent.left
            right: number.left; rightMargin: 12
            verticalCenter: parent.verticalCenter
        }
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        text: root.title
        color: root.theme.text
        font.pixelSize: 17 * root.theme.textScale
        Accessible.ignored: true
    }
    Text {
        id: number

        objectName: "confidence"
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        text: root.confidenceText
        color: root.theme.secondaryText
        font.pixelSize: 17 * root.theme.textScale
        Accessible.ignored: true
    }
}
