pragma ComponentBehavior: Bound

import QtQuick

/// So many of five stars.
Row {
    id: stars

    property int count
    // Here and not at each star: a star may outlast its row by a moment, and then has nobody to ask
    // when day turns to night.
    readonly property color bright: Theme.dark ? "#E8A317" : "#B27B00"
    readonly property color pale: Theme.edge

    spacing: 2
    Accessible.name: qsTr("%1 of 5 stars").arg(count)
    Accessible.role: Accessible.StaticText

    Repeater {
        model: 5

        Glyph {
            required property int index

            name: "star-full"
            size: 17
            color: index < stars.count ? stars.bright : stars.pale
        }
    }
}
