pragma ComponentBehavior: Bound

import QtQuick

/// A rating in stars, of five.
Row {
    id: stars

    property int count
    // Here and not in each star: a star may outlive its row for a moment, and could not ask it when the theme
    // changes.
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
