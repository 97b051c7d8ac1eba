import QtQuick
import Zelvora.Private

/// One choice in a group of rows whose outer corners are round.
PlainButton {
    id: row

    property string title
    property real confidence
    property bool isFirst
    property bool isLast
    property Theme theme

    readonly property string confidenceText: ChoiceText.confidence(confidence)
    readonly property real corner: 12

    text: title + ", " + confidenceText
    opacity: 1
    horizontalPadding: 16
    verticalPadding: 12
    implicitHeight: Math.max(48, implicitContentHeight + topPadding + bottomPadding)
    // The list cuts off what sticks out.
    focusMargin: 0
    focusRadius: 12
    focusColor: theme.accentText

    background: Item {
        // The inner corners lie outside, where they are cut off.
        clip: true

        Rectangle {
            anchors {
                fill: parent
                topMargin: row.isFirst ? 0 : -radius
                bottomMargin: row.isLast ? 0 : -radius
            }
            radius: row.corner
            color: row.theme.surface

            Rectangle {
                anchors.fill: parent
                radius: parent.radius
                visible: row.down
                color: row.theme.text
                opacity: 0.12
            }
        }
        Rectangle {
            anchors {
                left: parent.left; leftMargin: 16
                right: parent.right
                bottom: parent.bottom
            }
            visible: !row.isLast
            height: 1
            color: row.theme.text
            opacity: 0.12
        }
    }

    contentItem: ChoiceLabel {
        title: row.title
        confidenceText: row.confidenceText
        theme: row.theme
    }
}
