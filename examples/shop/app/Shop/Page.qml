import QtQuick
import QtQuick.Layouts

/// A screen that scrolls. Its content is one column, no wider than is good to read.
Flickable {
    id: page

    default property alias content: column.data
    property string screenId
    property var params: ({})
    property alias spacing: column.spacing
    /// For pages of tiles, which may take more room.
    property int widest: Theme.widest
    readonly property real innerWidth: column.width

    signal open(string screenId, var params)
    signal present(string presentationId)

    contentHeight: column.implicitHeight + 28
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    ColumnLayout {
        id: column

        anchors.horizontalCenter: parent.horizontalCenter
        y: 4
        width: Math.min(page.width - 2 * Theme.margin, page.widest)
        spacing: 16
        onWidthChanged: spread()
        onChildrenChanged: spread()
        Component.onCompleted: spread()

        // Items should know their height before the layout asks. One that finds out while the layout works
        // makes it start over, which it does twice at most.
        function spread() {
            for (let index = 0; index < children.length; ++index)
                if (children[index].Layout.fillWidth)
                    children[index].width = width
        }
    }
}
