import QtQuick
import Zelvora

/// The whole shop: a screen, the bar for commands, and what comes over them.
Rectangle {
    id: shop

    required property string bundle
    required property var replies
    readonly property string screenId: navigator.screenId
    readonly property var params: navigator.params
    readonly property string presentationId: presentation.presentationId
    readonly property alias assistant: assistant
    property bool dark: system.window.hslLightness < 0.5
    property int pace: 220

    function answer(said: string, badge: int) {
        banner.show(said, badge)
        replies.say(said)
    }

    function open(screenId: string, params: var) {
        presentation.presentationId = ""
        banner.hide()
        if (Screens.knows(screenId))
            navigator.open(screenId, params)
    }

    function present(presentationId: string) {
        presentation.presentationId = presentationId
    }

    function startAgain() {
        open("main", {})
    }

    function hideAnswer() {
        banner.hide()
    }

    onDarkChanged: Theme.dark = dark
    onPaceChanged: Theme.pace = pace
    implicitWidth: 390
    implicitHeight: 844
    color: Theme.page
    palette.window: Theme.page
    palette.windowText: Theme.ink
    palette.base: Theme.surface
    palette.text: Theme.ink
    palette.highlight: Theme.accent

    SystemPalette { id: system }
    ZelvoraAssistant {
        id: assistant

        bundle: shop.bundle
        spec: "shop"
        onStateChanged: if (state === ZelvoraMicState.Listening) shop.replies.hush()
        // A capture that could not begin ends in no outcome.
        onErrorChanged: if (error !== "") banner.show(error, ZelvoraBadgeType.Failure)
        onExecute: (screenId, params, say) => {
            shop.open(screenId, params)
            shop.answer(say, ZelvoraBadgeType.Success)
        }
        onPresent: (presentationId, params, say) => {
            shop.present(presentationId)
            shop.answer(say, ZelvoraBadgeType.Success)
        }
        onOffer: (choices, say) => shop.replies.say(say)
        onUnsupported: say => shop.answer(say, ZelvoraBadgeType.Failure)
    }
    TopBar {
        id: top

        width: parent.width
        title: Screens.title(shop.screenId)
        canGoBack: navigator.canGoBack
        muted: shop.replies.muted
        onBack: navigator.back()
        onCart: shop.open("basket", {})
        onSearch: shop.open("query", {})
        onToggleMuted: shop.replies.muted = !shop.replies.muted
    }
    Navigator {
        id: navigator

        anchors.top: top.bottom
        anchors.bottom: bar.top
        width: parent.width
        replies: shop.replies
        assistant: assistant
        onPresent: presentationId => shop.present(presentationId)
    }
    CommandBar {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        assistant: assistant
    }
    SayBanner {
        id: banner

        anchors.bottom: bar.top
        anchors.bottomMargin: 12
        x: 14
        width: parent.width - 28
    }
    PresentationSheet {
        id: presentation

        onOpen: (screenId, params) => shop.open(screenId, params)
    }
    ChoicesSheet { assistant: assistant }
}
