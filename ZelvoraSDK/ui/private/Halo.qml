import QtQuick

/// A circle about its parent's centre that grows while it fades and shrinks while it darkens.
Item {
    id: root

    property real size: 64
    /// Off, the circle rests at its largest.
    property bool pulses: true
    /// Where the swing stands, from 0 (small and dark) to 1 (large and faint).
    property real phase: 1

    // Sized instead of scaled: the software renderer scales a circle to a ragged one.
    Rectangle {
        objectName: "halo"
        anchors { centerIn: parent; alignWhenCentered: false }
        width: root.size * (1 + 0.35 * root.phase)
        height: width
        radius: width / 2
        color: root.palette.highlight
        opacity: 0.22 - 0.12 * root.phase
    }

    // The linter of Qt 6.4 does not know easing curves.
    // qmllint disable
    component Swing: NumberAnimation {
        property: "phase"
        duration: 900
        easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
    }
    // qmllint enable

    SequentialAnimation {
        running: root.pulses
        loops: Animation.Infinite
        onStopped: root.phase = 1

        Swing { target: root; from: 0; to: 1 }
        Swing { target: root; from: 1; to: 0 }
    }
}
