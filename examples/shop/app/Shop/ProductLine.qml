import QtQuick
import QtQuick.Layouts

/// A product in a line: picture, words, and what stands below or at its end.
GridLayout {
    id: line

    property var product
    property string detail: product.brand
    /// The page's width. A layout that asks for its own width while it is laid out never finishes.
    required property real room
    default property alias trailing: end.data
    readonly property bool isTight: room < 332 * Theme.textScale
    readonly property int side: room < 150 * Theme.textScale ? 48 : 72

    columns: isTight ? 2 : 3
    columnSpacing: 14
    rowSpacing: 4
    Layout.fillWidth: true

    Picture {
        implicitWidth: line.side
        implicitHeight: line.side
        radius: 16
        art: line.product.art
        hue: line.product.hue
    }
    ColumnLayout {
        spacing: 2

        Label {
            Layout.fillWidth: true
            text: line.product.name
            read: false
            font.weight: Font.Medium
        }
        Label {
            Layout.fillWidth: true
            text: line.detail
            read: false
            role: Label.Role.Small
            soft: true
        }
        Label {
            text: Stock.money(line.product.price)
            read: false
            font.weight: Font.DemiBold
        }
    }
    RowLayout {
        id: end

        Layout.columnSpan: line.isTight ? 2 : 1
        Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
        visible: children.length > 0
        spacing: 4
    }
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1, %2, %3").arg(product.name).arg(detail).arg(Stock.money(product.price))
}
