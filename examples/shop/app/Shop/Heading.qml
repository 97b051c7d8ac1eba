import QtQuick
import QtQuick.Layouts

/// The title of a part of a screen, with a way to see all of it.
GridLayout {
    id: heading

    property string text
    property string more
    /// The page's width. A layout that asks for its own width while it is laid out never finishes.
    required property real room

    signal clicked()

    columns: words.implicitWidth + button.implicitWidth + 16 < room ? 2 : 1
    rowSpacing: 0
    Layout.fillWidth: true

    Label {
        id: words

        Layout.fillWidth: true
        text: heading.text
        role: Label.Role.Heading
    }
    Pressable {
        id: button

        visible: heading.more !== ""
        text: heading.more
        corner: 8
        Accessible.name: heading.more + ", " + heading.text
        onClicked: heading.clicked()

        contentItem: Label {
            text: button.text
            read: false
            color: Theme.accent
            font.weight: Font.Medium
            verticalAlignment: Text.AlignVCenter
        }
    }
}
