import QtQuick

/// Text in one of the shop's few sizes.
Text {
    id: label

    enum Role { Title, Heading, Body, Small }

    property int role: Label.Role.Body
    property bool soft: false
    /// Off for words that a control around them says already.
    property bool read: true

    color: soft ? Theme.soft : Theme.ink
    horizontalAlignment: Text.AlignLeft
    font.pixelSize: [Theme.titleSize, Theme.headingSize, Theme.bodySize, Theme.smallSize][role]
    font.weight: role === Label.Role.Title ? Font.Bold : role === Label.Role.Heading ? Font.DemiBold : Font.Normal
    font.letterSpacing: role === Label.Role.Title ? -0.6 : role === Label.Role.Heading ? -0.2 : 0
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
    Accessible.role: role <= Label.Role.Heading ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !read || !visible || text === ""
}
