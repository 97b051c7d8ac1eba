pragma ComponentBehavior: Bound

import QtQuick

/// A screen that is a plain list.
Page {
    id: page

    required property var list

    Label {
        width: parent.width
        text: page.list.intro
        soft: true
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0

        Repeater {
            model: page.list.rows

            ListRow {
                required property var modelData
                required property int index

                width: parent.width
                glyph: modelData.glyph
                text: modelData.text
                detail: modelData.detail ?? ""
                value: modelData.value ?? ""
                leads: modelData.leads ?? modelData.opens !== undefined
                last: index === page.list.rows.length - 1
                onClicked: if (modelData.opens) page.open(modelData.opens, {})
            }
        }
    }
    PushButton {
        width: parent.width
        visible: page.list.action !== undefined
        quiet: true
        text: page.list.action ?? ""
    }
}
