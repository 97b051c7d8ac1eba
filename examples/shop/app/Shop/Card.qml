import QtQuick
import QtQuick.Layouts

/// A raised sheet of paper around a column.
Rectangle {
    id: card

    default property alias content: column.data
    property int padding: 16
    property int spacing: Theme.gap

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding
    color: Theme.surface
    border.color: Theme.line
    radius: Theme.radius
    Layout.fillWidth: true

    ColumnLayout {
        id: column

        anchors { fill: parent; margins: card.padding }
        spacing: card.spacing
    }
}
