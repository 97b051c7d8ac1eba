import QtQuick
import Zelvora
import Zelvora.Private as Private

/// A small round sign that a command succeeded or failed.
Item {
    id: root

    /// A ZelvoraBadgeType.
    property int type: ZelvoraBadgeType.Success

    implicitWidth: 24
    implicitHeight: 24
    Accessible.ignored: true

    Private.BadgeImage {
        objectName: "image"
        anchors.centerIn: parent
        width: 24
        height: 24
        name: ["badge_success", "badge_failure"][root.type]
    }
}
