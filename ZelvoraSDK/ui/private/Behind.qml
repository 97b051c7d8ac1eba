import QtQuick
import Zelvora.Private

/// What lies behind a plate, as a source for an effect, and the plate's shape to cut it to.
Item {
    id: behind

    required property Plate plate
    property alias ground: groundSource
    property alias shape: shapeItem

    x: plate.ground.x
    y: plate.ground.y
    width: plate.ground.width
    height: plate.ground.height
    z: -1

    ShaderEffectSource {
        id: groundSource

        anchors.fill: parent
        visible: false
        sourceItem: behind.plate.backdrop
        sourceRect: behind.placeBehind()
    }

    Rectangle {
        id: shapeItem

        anchors.fill: parent
        visible: false
        radius: behind.plate.radius < 0 ? Math.min(width, height) / 2 : behind.plate.radius
    }

    function placeBehind() : rect {
        if (!plate.backdrop)
            return Qt.rect(0, 0, 0, 0)
        // mapToItem() has no change signal; what is read here has.
        const places = [width, height]
        for (let item = plate as Item; item; item = item.parent)
            places.push(item.x, item.y)
        return mapToItem(plate.backdrop, 0, 0, width, height)
    }
}
