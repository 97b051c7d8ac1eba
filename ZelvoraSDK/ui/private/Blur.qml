import QtQuick
import Qt5Compat.GraphicalEffects // qmllint disable import
import Zelvora

/// What lies behind a material, blurred and cut to its shape.
Item {
    id: blur

    property Material material: null

    ShaderEffectSource {
        id: behind

        anchors.fill: parent
        visible: false
        sourceItem: blur.material?.backdrop ?? null
        // qmllint disable
        sourceRect: {
            if (!sourceItem)
                return Qt.rect(0, 0, 0, 0);
            // mapToItem() tells nobody when its answer changes; what is read here does.
            const places = [blur.width, blur.height];
            for (let item = blur.material; item; item = item.parent)
                places.push(item.x, item.y);
            return blur.mapToItem(sourceItem, 0, 0, blur.width, blur.height);
        }
        // qmllint enable
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
        radius: blur.material?.radius ?? 0
    }

    OpacityMask {
        anchors.fill: parent
        source: blurred
        maskSource: shape
    }
}
