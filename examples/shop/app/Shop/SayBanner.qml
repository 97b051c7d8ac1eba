import QtQuick
import Zelvora

/// What the shop answered, for a moment, with the badge of success or failure.
Item {
    id: banner

    property string text
    property int badge: ZelvoraBadgeType.Success

    function hide() {
        opacity = 0
    }

    function show(said: string, type: int) {
        if (said === "") return
        text = said
        badge = type
        shown.running = Theme.pace > 0
        opacity = 1
    }

    implicitHeight: Math.max(56, words.height + 32)
    visible: opacity > 0
    opacity: 0

    Behavior on opacity {
        enabled: Theme.pace > 0

        NumberAnimation { duration: Theme.pace }
    }
    Timer {
        id: shown

        interval: 3200
        onTriggered: banner.hide()
    }
    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 3
        radius: 20
        color: "#000000"
        opacity: 0.10
    }
    Rectangle {
        anchors.fill: parent
        radius: 20
        color: Theme.surface
        border.color: Theme.line
    }
    ZelvoraBadgeView {
        id: mark

        objectName: "answerBadge"
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        type: banner.badge
    }
    Label {
        id: words

        objectName: "answer"
        anchors.left: mark.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: banner.text
        font.weight: Font.Medium
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
