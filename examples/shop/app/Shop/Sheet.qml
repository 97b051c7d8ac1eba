pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

/// Comes up from below, over everything. A tap beside it, Escape, Back or a pull on its handle closes it.
T.Drawer {
    id: sheet

    default property alias content: column.data
    property string title
    property bool rightToLeft: false
    property real safeBottom: 0
    property Item surroundings

    property Item before: null
    property int beforeReason: Qt.OtherFocusReason

    onAboutToShow: {
        before = surroundings.Window.activeFocusItem
        beforeReason = (before as T.Control)?.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason
    }
    onClosed: {
        if (before?.visible)
            before.forceActiveFocus(beforeReason)
    }
    edge: Qt.BottomEdge
    modal: true
    focus: true
    dragMargin: 0
    interactive: opened
    width: Math.min(Theme.widest, surroundings.width)
    height: Math.min(column.implicitHeight + 30 + 24 + safeBottom, surroundings.height - 24)
    x: (surroundings.width - width) / 2

    enter: Transition {
        NumberAnimation { property: "position"; to: 1; duration: Theme.pace; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "position"; to: 0; duration: Theme.pace; easing.type: Easing.InCubic }
    }
    // The drawer's own is only as wide as the drawer.
    T.Overlay.modal: Item {
        id: behind

        Rectangle {
            x: -behind.x
            y: -behind.y
            width: behind.parent?.width ?? 0
            height: behind.parent?.height ?? 0
            color: Theme.scrim
            opacity: sheet.position
        }
    }
    background: Rectangle {
        radius: 28
        color: Theme.page

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: 28
            color: parent.color
        }
    }
    Item {
        anchors.fill: parent
        // A popup does not inherit these.
        LayoutMirroring.enabled: sheet.rightToLeft
        LayoutMirroring.childrenInherit: true
        focus: true
        Keys.onEscapePressed: sheet.close()
        Keys.onBackPressed: sheet.close()
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 10
            width: 38
            height: 5
            radius: 2.5
            color: Theme.edge
        }
        Flickable {
            anchors { fill: parent; topMargin: 30; bottomMargin: sheet.safeBottom }
            contentHeight: column.implicitHeight + 24
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height + 1
            clip: true

            ColumnLayout {
                id: column

                anchors { left: parent.left; right: parent.right; margins: Theme.margin }
                spacing: 16
            }
        }
    }
}
