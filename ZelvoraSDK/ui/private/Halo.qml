import QtQuick

/// A circle that grows while it fades and shrinks while it darkens.
Rectangle {
    id: halo

    /// Where the swing stands, from 0 (small and dark) to 1 (large and faint).
    property real phase: 0

    radius: width / 2
    color: palette.highlight
    scale: 1 + 0.35 * phase
    opacity: 0.22 - 0.12 * phase

    SequentialAnimation {
        running: halo.visible
        loops: Animation.Infinite

        NumberAnimation {
            target: halo; property: "phase"; from: 0; to: 1; duration: 900
            easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
        }
        NumberAnimation {
            target: halo; property: "phase"; from: 1; to: 0; duration: 900
            easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
        }
    }
}
