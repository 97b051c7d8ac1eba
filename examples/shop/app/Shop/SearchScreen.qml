pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Looking for a product by its name.
Page {
    id: page

    widest: 960

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: Math.max(52, field.implicitHeight + 24)
        radius: 26
        color: Theme.surface
        border { width: field.activeFocus ? 2 : 1; color: field.activeFocus ? Theme.accent : Theme.edge }

        Glyph {
            id: glass

            anchors { left: parent.left; leftMargin: 18; verticalCenter: parent.verticalCenter }
            name: "search"
            color: Theme.soft
        }
        TextInput {
            id: field

            objectName: "searchField"
            anchors { left: glass.right; right: parent.right; leftMargin: 12; rightMargin: 18; verticalCenter: parent.verticalCenter }
            activeFocusOnTab: true
            horizontalAlignment: TextInput.AlignLeft
            wrapMode: TextInput.Wrap
            text: page.params.query ?? ""
            color: Theme.ink
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentInk
            font.pixelSize: Theme.bodySize
            Accessible.role: Accessible.EditableText
            Accessible.name: qsTr("Search products")
            onActiveFocusChanged: if (activeFocus) Scrolling.show(field)

            Label {
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                visible: field.text === ""
                text: qsTr("Search products")
                read: false
                soft: true
            }
        }
    }
    Flow {
        Layout.fillWidth: true
        visible: field.text === ""
        spacing: 8

        Repeater {
            model: [qsTr("shoe"), qsTr("coat"), qsTr("shirt"), qsTr("mug"), qsTr("train")]

            Chip {
                required property string modelData

                text: modelData
                onClicked: field.text = modelData
            }
        }
    }
    Heading {
        room: page.innerWidth
        text: field.text === "" ? qsTr("You looked at") : qsTr("%n found", "", grid.products.length)
    }
    ProductGrid {
        id: grid

        room: page.innerWidth
        products: field.text === "" ? Stock.products.slice(1, 5) : Stock.search(field.text)
        onOpen: (screenId, params) => page.open(screenId, params)
    }
}
