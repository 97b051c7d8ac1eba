import QtQuick

/// A screen that scrolls: what stands in it is one column.
Flickable {
    id: page

    default property alias content: column.data
    property var params: ({})
    property int spacing: 16

    signal open(string screenId, var params)
    signal present(string presentationId)

    contentHeight: column.height + 40
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    Column {
        id: column

        x: Theme.margin
        y: 4
        width: page.width - 2 * Theme.margin
        spacing: page.spacing
    }
}
