import QtQuick
import QtQuick.Templates as T

/// What every control of the shop has in common: it is pressed by a finger, by Space, Return and
/// Enter and by a screen reader, it shows the keyboard's focus, and it comes into sight with it.
T.AbstractButton {
    id: pressable

    property real corner: Theme.radius
    property color focusColor: Theme.ink

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.touch, implicitContentHeight + topPadding + bottomPadding)
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    onActiveFocusChanged: if (activeFocus) Scrolling.show(pressable)

    function press(event: KeyEvent) {
        if (!event.isAutoRepeat)
            clicked()
    }

    Rectangle {
        objectName: "focusRing"
        anchors { fill: parent; margins: -3 }
        z: 1
        visible: pressable.visualFocus
        color: "transparent"
        radius: pressable.corner + 3
        border { width: 2; color: pressable.focusColor }
    }
}
