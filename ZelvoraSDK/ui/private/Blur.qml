import QtQuick
import Qt5Compat.GraphicalEffects
import Zelvora.Private

/// What lies behind a plate, blurred and cut to its shape.
Item {
    id: blur

    required property Plate plate

    x: plate.ground.x
    y: plate.ground.y
    width: plate.ground.width
    height: plate.ground.height
    z: -1

    ShaderEffectSource {
        id: behind

        anchors.fill: parent
        visible: false
        sourceItem: blur.plate.backdrop
        sourceRect: blur.placeBehind()
    }

    FastBlur {
        id: blurred

        anchors.fill: parent
        visible: false
        source: behind
        radius: 32
    }

    Rectangle {
        id: shape

        anchors.fill: parent
        visible: false
        radius: blur.plate.radius < 0 ? Math.min(width, height) / 2 : blur.plate.radius
    }

    OpacityMask {
        anchors.fill: parent
        source: blurred
        maskSource: shape
    }

    function placeBehind() : rect {
        if (!plate.backdrop)
            return Qt.rect(0, 0, 0, 0)
        // mapToItem() tells nobody when its answer changes; what is read here does.
        const places = [width, height]
        for (let item = plate as Item; item; item = item.parent)
            places.push(item.x, item.y)
        return mapToItem(plate.backdrop, 0, 0, width, height)
    }
}
