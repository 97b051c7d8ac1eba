import QtQuick
import Qt5Compat.GraphicalEffects
import Zelvora.Private

/// What lies behind a plate, blurred and cut to its shape.
Behind {
    id: blur

    FastBlur {
        id: blurred

        anchors.fill: parent
        visible: false
        source: blur.ground
        radius: 32
    }

    OpacityMask {
        anchors.fill: parent
        source: blurred
        maskSource: blur.shape
    }
}
