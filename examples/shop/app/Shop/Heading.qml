import QtQuick
import QtQuick.Templates as T

/// The title of a part of a screen, with a way to see all of it.
Item {
    id: heading

    property string text
    property string more

    signal clicked()

    implicitHeight: 32

    Label {
        anchors.verticalCenter: parent.verticalCenter
        text: heading.text
        role: Label.Role.Heading
    }
    T.AbstractButton {
        id: button

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: heading.more !== ""
        text: heading.more
        implicitHeight: Theme.touch
        implicitWidth: word.implicitWidth
        Accessible.ignored: !visible
        Accessible.name: text
        Accessible.onPressAction: clicked()
        onClicked: heading.clicked()

        contentItem: Label {  // qmllint disable deferred-property-id
            id: word

            text: button.text
            color: Theme.accent
            font.weight: Font.Medium
            verticalAlignment: Text.AlignVCenter
        }
    }
}
