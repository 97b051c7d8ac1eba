pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zelvora

/// Lists the tasks that a command may have meant, and tells which one the user picks.
T.StackView {
    id: root

    property string title
    /// A line of explanation; none when empty.
    property string say
    /// A list of `zelvoraChoice` values, or of objects with their fields.
    property var choices: []
    /// Enlarges all texts.
    property real textScale: 1

    /// With the element of `choices` that was picked.
    signal select(var choice)

    initialItem: T.Page {
        title: root.title
        background: Rectangle { color: root.palette.window }

        Column {
            id: heading

            anchors { left: parent.left; right: parent.right }
            topPadding: 12
            spacing: 12

            Text {
                objectName: "title"
                width: parent.width
                leftPadding: 16
                rightPadding: 16
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: root.title
                color: root.palette.windowText
                font { pixelSize: 17 * root.textScale; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                objectName: "say"
                width: parent.width
                visible: root.say !== ""
                leftPadding: 16
                rightPadding: 16
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: root.say
                color: root.palette.windowText
                opacity: 0.6
                font.pixelSize: 15 * root.textScale
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        ListView {
            id: list

            objectName: "list"
            anchors {
                left: parent.left; right: parent.right
                top: heading.bottom; topMargin: 12
                bottom: parent.bottom
            }
            leftMargin: 16
            rightMargin: 16
            bottomMargin: 16
            clip: true
            boundsBehavior: contentHeight > height ? Flickable.DragAndOvershootBounds
                                                   : Flickable.StopAtBounds
            model: root.choices
            delegate: ChoiceRow {
                required property var modelData
                required property int index

                objectName: "row" + index
                width: list.width - list.leftMargin - list.rightMargin
                title: modelData.title
                confidence: modelData.confidence
                isFirst: index === 0
                isLast: index === list.count - 1
                textScale: root.textScale
                onClicked: root.select(modelData)
                Keys.onUpPressed: list.walk(-1)
                Keys.onDownPressed: list.walk(1)
                onActiveFocusChanged: if (activeFocus) list.currentIndex = index
            }

            function walk(step) {
                currentIndex = Math.max(0, Math.min(count - 1, currentIndex + step));
                positionViewAtIndex(currentIndex, ListView.Contain);
                currentItem.forceActiveFocus(Qt.TabFocusReason); // qmllint disable
            }
        }
    }
}
