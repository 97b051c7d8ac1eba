import QtQuick
import QtQuick.Effects
import Zelvora.Private

/// The same with Qt's own blur, which exists since 6.5. Untried: this project is built with Qt 6.4.
Behind {
    id: blur

    shape.layer.enabled: true

    MultiEffect {
        anchors.fill: parent
        source: blur.ground
        blurEnabled: true
        blur: 1
        blurMax: 32
        maskEnabled: true
        maskSource: blur.shape
    }
}
