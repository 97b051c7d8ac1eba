pragma ComponentBehavior: Bound

import QtQuick

/// So many of five stars.
Row {
    id: stars

    property int count

    spacing: 2
    Accessible.name: qsTr("%1 of 5 stars").arg(count)
    Accessible.role: Accessible.StaticText

    Repeater {
        model: 5

        Glyph {
            required property int index

            name: "star-full"
            size: 17
            color: index < stars.count ? Theme.dark ? "#E8A317" : "#B27B00" : Theme.edge
        }
    }
}
