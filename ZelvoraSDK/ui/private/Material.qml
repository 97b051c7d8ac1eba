import QtQuick

/// A translucent surface. Where the renderer has shaders, what lies behind it is blurred.
Item {
    id: material

    property real radius: 0
    property bool ultraThin: false
    property alias border: surface.border
    /// The item behind, of which the blur is made; without one the surface is only translucent.
    property Item backdrop: null
    readonly property bool blurs: blur.status === Loader.Ready

    readonly property bool dark: palette.window.hslLightness < 0.5
    readonly property real strength: blurs ? (ultraThin ? 0.4 : 0.6) : (ultraThin ? 0.64 : 0.8)

    Loader {
        id: blur

        anchors.fill: parent
        active: material.backdrop !== null
                && GraphicsInfo.shaderType !== GraphicsInfo.UnknownShadingLanguage
        source: "Blur.qml"
        onLoaded: (item as Blur).material = material
    }

    Rectangle {
        id: surface

        anchors.fill: parent
        radius: material.radius
        border.width: 0
        color: {
            if (material.dark)
                return Qt.rgba(0.2, 0.2, 0.21, material.strength);
            // The thinner one is darker, to stand out from a light screen without a shadow.
            return material.ultraThin ? Qt.rgba(0.86, 0.86, 0.89, material.strength)
                                      : Qt.rgba(0.98, 0.98, 0.99, material.strength);
        }
    }
}
