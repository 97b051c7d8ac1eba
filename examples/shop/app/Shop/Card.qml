import QtQuick

/// A raised sheet of paper around a column.
Rectangle {
    id: card

    default property alias content: column.data
    property int padding: 16
    property int spacing: Theme.gap

    implicitHeight: column.height + 2 * padding
    color: Theme.surface
    border.color: Theme.line
    radius: Theme.radius

    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
        spacing: card.spacing
    }
}
