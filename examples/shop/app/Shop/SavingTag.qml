import QtQuick

/// How much cheaper a product has become.
Rectangle {
    id: tag

    property int percent

    width: words.implicitWidth + 16
    height: words.implicitHeight + 8
    radius: 12
    color: Theme.warm

    Label {
        id: words

        anchors.centerIn: parent
        text: qsTr("−%1%").arg(tag.percent)
        read: false
        role: Label.Role.Small
        color: Theme.warmInk
        font.weight: Font.DemiBold
    }
}
