import QtQuick

/// A translucent surface.
Rectangle {
    readonly property bool dark: palette.window.hslLightness < 0.5

    color: dark ? Qt.rgba(0.17, 0.17, 0.18, 0.8) : Qt.rgba(0.98, 0.98, 0.99, 0.8)
}
