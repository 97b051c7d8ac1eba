pragma ComponentBehavior: Bound

import QtQuick
import Zelvora.Private

/// What the surface says above its bar: an answer, what was heard, what to do, or what may be said.
Item {
    id: notice

    required property Theme theme
    /// "badge_success", "badge_failure" or empty.
    property string badge
    /// Beside the title when there is no badge.
    property string symbol
    property string title
    property string detail
    property string phrasesTitle
    property var phrases: []
    /// Objects with `key` and `text`.
    property var actions: []
    property bool plain: false  ///< Without a ground of its own.
    property bool closes: false
    property real mostHeight: 10000

    readonly property real inset: plain ? 0 : 16

    signal picked(string phrase)
    signal acted(string key)
    signal closed()

    implicitHeight: Math.min(column.height + 2 * inset, mostHeight)
    visible: notice.title !== "" || notice.detail !== "" || notice.phrases.length > 0 || notice.actions.length > 0

    Plate {
        anchors.fill: parent
        visible: !notice.plain
        radius: 22
        fill: notice.theme.surface
        stroke: Qt.rgba(notice.theme.text.r, notice.theme.text.g, notice.theme.text.b, 0.12)
        blur: 14
        offset: 3
        strength: 0.16
    }
    // Taps on the card do not reach what is behind it.
    MouseArea {
        anchors.fill: parent
        enabled: !notice.plain
    }
    Flickable {
        anchors { fill: parent; margins: notice.inset }
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive

        Column {
            id: column

            width: parent.width
            spacing: 12

            Item {
                width: parent.width
                height: Math.max(words.height, mark.width > 0 ? mark.height : 0, notice.closes ? 44 : 0)
                visible: notice.title !== "" || notice.detail !== ""

                Item {
                    id: mark

                    anchors.left: parent.left
                    y: words.y + (words.firstLine - height) / 2
                    visible: notice.badge !== "" || notice.symbol !== ""
                    width: notice.badge !== "" || notice.symbol !== "" ? 24 : 0
                    height: 24

                    OnDemand {
                        wanted: notice.badge !== ""
                        component: Component {
                            BadgeImage {
                                objectName: "answerBadge"
                                anchors.fill: parent
                                name: notice.badge
                            }
                        }
                    }
                    Plate {
                        anchors.fill: parent
                        visible: notice.badge === "" && notice.symbol !== ""
                        symbol: notice.symbol
                        symbolSize: 24
                        color: notice.theme.accentText
                        theme: notice.theme
                    }
                }
                Column {
                    id: words

                    readonly property real firstLine: Math.min(heading.height, 20 * notice.theme.textScale)

                    anchors {
                        left: mark.right; leftMargin: mark.width > 0 ? 12 : 0
                        right: close.left; rightMargin: notice.closes ? 4 : 0
                        verticalCenter: parent.verticalCenter
                    }
                    spacing: 2

                    Text {
                        id: heading

                        objectName: "answer"
                        width: parent.width
                        visible: text !== ""
                        horizontalAlignment: Text.AlignLeft
                        wrapMode: Text.Wrap
                        text: notice.title
                        textFormat: Text.PlainText
                        color: notice.theme.text
                        font { pixelSize: 16 * notice.theme.textScale; weight: Font.DemiBold }
                        Accessible.role: Accessible.AlertMessage
                        Accessible.name: text
                        Accessible.ignored: !visible
                    }
                    Text {
                        objectName: "detail"
                        width: parent.width
                        visible: text !== ""
                        horizontalAlignment: Text.AlignLeft
                        wrapMode: Text.Wrap
                        text: notice.detail
                        textFormat: Text.PlainText
                        color: notice.theme.secondaryText
                        font.pixelSize: 15 * notice.theme.textScale
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                        Accessible.ignored: !visible
                    }
                }
                RoundButton {
                    id: close

                    objectName: "closeAnswer"
                    anchors { right: parent.right; rightMargin: -8 }
                    y: words.y + (words.firstLine - height) / 2
                    width: notice.closes ? 44 : 0
                    visible: notice.closes
                    theme: notice.theme
                    symbol: "xmark"
                    text: qsTr("Close")
                    Accessible.ignored: !visible
                    onClicked: notice.closed()
                    onActiveFocusChanged: if (activeFocus) Reveal.show(close)
                }
            }
            Text {
                width: parent.width
                visible: phraseList.count > 0 && text !== ""
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                text: notice.phrasesTitle
                color: notice.theme.secondaryText
                font { pixelSize: 13 * notice.theme.textScale; weight: Font.Medium }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: !visible
            }
            Flow {
                width: parent.width
                visible: phraseList.count > 0
                spacing: 8

                Repeater {
                    id: phraseList

                    model: notice.phrases

                    Chip {
                        required property string modelData
                        required property int index

                        objectName: "phrase" + index
                        theme: notice.theme
                        text: modelData
                        onClicked: notice.picked(modelData)
                    }
                }
            }
            Flow {
                width: parent.width
                visible: actionList.count > 0
                spacing: 8

                Repeater {
                    id: actionList

                    model: notice.actions

                    WordButton {
                        required property var modelData
                        required property int index

                        objectName: modelData.key
                        theme: notice.theme
                        primary: index === 0 && !modelData.quiet
                        text: modelData.text
                        onClicked: notice.acted(modelData.key)
                    }
                }
            }
        }
    }
}
