import QtQuick
import QtQuick.Layouts

/// Text in one of the shop's few sizes.
Text {
    id: label

    enum Role { Title, Heading, Body, Small }

    property int role: Label.Role.Body
    property bool soft: false
    /// Off for words that the control around them already says.
    property bool read: true

    readonly property bool isTight: width > 0 && longestWord.advanceWidth > width

    color: soft ? Theme.soft : Theme.ink
    horizontalAlignment: Text.AlignLeft
    font.pixelSize: [Theme.titleSize, Theme.headingSize, Theme.bodySize, Theme.smallSize][role]
    font.weight: role === Label.Role.Title ? Font.Bold : role === Label.Role.Heading ? Font.DemiBold : Font.Normal
    font.letterSpacing: role === Label.Role.Title ? -0.6 : role === Label.Role.Heading ? -0.2 : 0
    wrapMode: Text.Wrap
    // Lines break between words. Where a word is wider than its place, the letters get smaller.
    fontSizeMode: isTight ? Text.HorizontalFit : Text.FixedSize
    minimumPixelSize: isTight ? Math.floor(font.pixelSize * width / longestWord.advanceWidth) : 1
    Layout.preferredHeight: isTight ? contentHeight : -1
    textFormat: Text.PlainText
    Accessible.role: role <= Label.Role.Heading ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !read || !visible || text === ""

    TextMetrics {
        id: longestWord

        font: label.font
        text: label.text.split(/[^\S\u00A0]+|-/).reduce((longest, word) => word.length > longest.length ? word : longest, "")
    }
}
