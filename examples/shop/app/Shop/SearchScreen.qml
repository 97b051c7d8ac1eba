pragma ComponentBehavior: Bound

import QtQuick
import Zelvora

/// Looking for a product by its name.
Page {
    id: page

    required property ZelvoraAssistant assistant
    readonly property string last: assistant.lastOutcome.kind

    Rectangle {
        width: parent.width
        height: 52
        radius: 26
        color: Theme.surface
        border.color: field.activeFocus ? Theme.accent : Theme.line

        Glyph {
            id: glass

            anchors.left: parent.left
            anchors.leftMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            name: "search"
            color: Theme.soft
        }
        TextInput {
            id: field

            anchors.left: glass.right
            anchors.right: parent.right
            anchors.margins: 12
            anchors.verticalCenter: parent.verticalCenter
            text: page.params.query ?? ""
            color: Theme.ink
            font.pixelSize: Theme.bodySize
            clip: true
            Accessible.name: qsTr("Search products")

            Label {
                visible: field.text === ""
                text: qsTr("Shoes, coats, mugs …")
                soft: true
            }
        }
    }
    Flow {
        width: parent.width
        spacing: 8
        visible: field.text === ""

        Repeater {
            model: [qsTr("shoe"), qsTr("coat"), qsTr("shirt"), qsTr("mug"), qsTr("train")]

            Chip {
                required property string modelData

                text: modelData
                onClicked: field.text = modelData
            }
        }
    }
    ZelvoraFloatingMic {
        visible: field.text === ""
        state: page.assistant.state
        badge: page.last === "" ? null : page.last === "unsupported" ? ZelvoraBadgeType.Failure
                                                                      : ZelvoraBadgeType.Success
        palette.windowText: Theme.accent
        onTap: page.assistant.tapMic()
        onStopTap: page.assistant.stop()
    }
    Heading {
        width: parent.width
        text: field.text === "" ? qsTr("You looked at") : qsTr("%n found", "", grid.products.length)
    }
    ProductGrid {
        id: grid

        width: parent.width
        products: field.text === "" ? Stock.products.slice(1, 5) : Stock.search(field.text)
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
