import QtQuick
import QtQuick.Templates as T
import Zelvora

/// A button that looks like its content alone. Its `text` is what a screen reader says.
T.AbstractButton {
    id: button

    /// Of the ring that shows the keyboard's focus.
    property real focusRadius: 12

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    opacity: down ? 0.6 : 1

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.ignored: !visible
    Accessible.onPressAction: click()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)

    function click() {
        if (enabled)
            clicked();
    }

    function press(event) {
        if (!event.isAutoRepeat)
            click();
    }

    // A finger needs 44 points, however small the button is drawn.
    containmentMask: QtObject {
        function contains(point: point): bool {
            const sides = Math.max(0, (44 - button.width) / 2);
            const ends = Math.max(0, (44 - button.height) / 2);
            return point.x >= -sides && point.x <= button.width + sides
                && point.y >= -ends && point.y <= button.height + ends;
        }
    }

    Loader {
        anchors { fill: parent; margins: -3 }
        active: button.visualFocus
        source: "FocusRing.qml"
        onLoaded: (item as FocusRing).radius = Qt.binding(() => button.focusRadius + 3)
    }
}
