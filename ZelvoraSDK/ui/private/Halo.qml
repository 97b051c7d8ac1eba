import QtQuick

/// A circle about its parent's centre that grows while it fades and shrinks while it darkens.
Item {
    id: root

    property real size: 64
    property color color
    /// If off, the circle rests at its largest.
    property bool pulses: true
    /// The position of the swing, from 0 (small and dark) to 1 (large and faint).
    property real phase: 1

    // Sized instead of scaled: the software renderer scales a circle to a ragged one.
    Rectangle {
        objectName: "halo"
        anchors { centerIn: parent; alignWhenCentered: false }
        width: root.size * (1 + 0.35 * root.phase)
        height: width
        radius: width / 2
        color: root.color
        opacity: 0.22 - 0.12 * root.phase
    }

    component Swing: NumberAnimation {
        property: "phase"
        duration: 900
        easing.type: Easing.BezierSpline
        easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
    }

    SequentialAnimation {
        running: root.pulses
        loops: Animation.Infinite
        onStopped: root.phase = 1

        Swing { target: root; from: 0; to: 1 }
        Swing { target: root; from: 1; to: 0 }
    }
}
