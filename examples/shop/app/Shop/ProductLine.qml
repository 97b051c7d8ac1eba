import QtQuick
import QtQuick.Layouts

/// A product in a line: picture, words, and what stands below or at its end.
GridLayout {
    id: line

    property var product
    property string detail: product.brand
    default property alias trailing: end.data
    readonly property bool isTight: width < 300 * Theme.textScale

    columns: isTight ? 2 : 3
    columnSpacing: 14
    rowSpacing: 4
    Layout.fillWidth: true

    Picture {
        implicitWidth: 72
        implicitHeight: 72
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
