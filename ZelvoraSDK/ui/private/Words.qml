import QtQuick
import Zelvora.Private

/// The words of a button, in its middle.
Item {
    id: root

    property Theme theme
    property string text
    property color color
    property bool strong: false
    property real margin: 16

    implicitWidth: words.implicitWidth + 2 * margin
    implicitHeight: words.implicitHeight + 20

    Text {
        id: words

        anchors { verticalCenter: parent.verticalCenter; left: parent.left; right: parent.right; margins: root.margin }
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: root.text
        textFormat: Text.PlainText
        color: root.color
        font { pixelSize: 15 * root.theme.textScale; weight: root.strong ? Font.DemiBold : Font.Normal }
        Accessible.ignored: true
    }
}
