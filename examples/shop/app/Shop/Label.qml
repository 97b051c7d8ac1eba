import QtQuick

/// Text in one of the shop's few sizes.
Text {
    enum Role { Title, Heading, Body, Small }

    property int role: Label.Role.Body
    property bool soft: false

    color: soft ? Theme.soft : Theme.ink
    font.pixelSize: [Theme.titleSize, Theme.headingSize, Theme.bodySize, Theme.smallSize][role]
    font.weight: role === Label.Role.Title ? Font.Bold : role === Label.Role.Heading ? Font.DemiBold : Font.Normal
    font.letterSpacing: role === Label.Role.Title ? -0.6 : role === Label.Role.Heading ? -0.2 : 0
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
}
