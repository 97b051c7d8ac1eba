pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zelvora
import Zelvora.Private as Private

/// Lists the tasks that a command may have meant, and reports which one the user picks.
T.StackView {
    id: root

    property string title
    /// A line of explanation; none when empty.
    property string say
    /// A list of `zelvoraChoice` values, or of objects with their fields.
    property var choices: []
    /// The height at which nothing needs to be scrolled.
    readonly property real wantedHeight: heading.height + 12 + list.contentHeight + list.bottomMargin

    /// With the element of `choices` that was picked.
    signal select(var choice)

    /// Gives the first choice the keyboard's focus.
    function focusFirst() {
        list.walk(-list.count)
    }

    initialItem: T.Page {
        title: root.title
        background: Rectangle { color: ZelvoraTheme.background }

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
                color: root.ZelvoraTheme.text
                font { pixelSize: 17 * root.ZelvoraTheme.textScale; weight: Font.DemiBold }
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
                color: root.ZelvoraTheme.secondaryText
                font.pixelSize: 15 * root.ZelvoraTheme.textScale
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
            delegate: Private.ChoiceRow {
                id: row

                required property var modelData
                required property int index

                objectName: "row" + index
                width: list.width - list.leftMargin - list.rightMargin
                title: modelData.title
                confidence: modelData.confidence
                isFirst: index === 0
                isLast: index === list.count - 1
                theme: root.ZelvoraTheme
                onClicked: root.select(modelData)
                Keys.onUpPressed: list.walk(-1)
                Keys.onDownPressed: list.walk(1)
                onActiveFocusChanged: if (activeFocus) list.reach(row.index)
            }

            function reach(index: int) {
                currentIndex = index
                positionViewAtIndex(index, ListView.Contain)
            }

            function walk(step: int) {
                reach(Math.max(0, Math.min(count - 1, currentIndex + step)))
                currentItem?.forceActiveFocus(Qt.TabFocusReason)
            }
        }
    }
}
