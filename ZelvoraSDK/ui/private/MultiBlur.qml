import QtQuick
import QtQuick.Effects
import Zelvora.Private

/// The same by what Qt has of its own from version 6.5 on. Untried: this project is built with Qt 6.4.
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
