import QtQuick
import Zelvora

/// The whole shop: a screen, the conversation over it, and what comes over both.
Rectangle {
    id: shop

    required property string bundle
    required property var replies
    required property var language
    readonly property string screenId: navigator.screenId
    readonly property var params: navigator.params
    readonly property string presentationId: presentation.presentationId
    readonly property alias assistant: assistant
    readonly property alias surface: surface
    readonly property string mode: surface.mode
    property bool dark: system.window.hslLightness < 0.5
    property int pace: 220
    property real textScale: 1
    property real safeTop: 0
    property real safeBottom: 0

    function open(screenId: string, params: var) {
        presentation.presentationId = ""
        if (Screens.knows(screenId))
            navigator.open(screenId, params)
    }

    function present(presentationId: string) {
        surface.dismiss()
        presentation.presentationId = presentationId
    }

    function startAgain() {
        presentation.presentationId = ""
        surface.dismiss()
        navigator.startAgain()
    }

    function hideAnswer() {
        surface.dismiss()
    }

    implicitWidth: 390
    implicitHeight: 844
    color: Theme.page
    palette.window: Theme.page
    palette.windowText: Theme.ink
    palette.base: Theme.surface
    palette.text: Theme.ink
    palette.highlight: Theme.accent
    LayoutMirroring.enabled: language.rightToLeft
    LayoutMirroring.childrenInherit: true
    ZelvoraTheme.background: Theme.page
    ZelvoraTheme.surface: Theme.surface
    ZelvoraTheme.text: Theme.ink
    ZelvoraTheme.secondaryText: Theme.soft
    ZelvoraTheme.accent: Theme.accent
    ZelvoraTheme.dark: Theme.dark
    ZelvoraTheme.textScale: Theme.textScale
    ZelvoraTheme.reducedMotion: Theme.pace === 0
    Keys.onEscapePressed: navigator.back()
    Keys.onBackPressed: event => {
        event.accepted = navigator.canGoBack
        navigator.back()
    }

    Binding { target: Theme; property: "dark"; value: shop.dark; restoreMode: Binding.RestoreNone }
    Binding { target: Theme; property: "pace"; value: shop.pace }
    Binding { target: Theme; property: "textScale"; value: shop.textScale }
    Binding {
        target: Screens
        property: "given"
        value: ({ setup: { shop } })
    }

    SystemPalette { id: system }
    Shortcut {
        sequences: ["Ctrl+K", "F6"]
        onActivated: surface.edit("")
    }
    ZelvoraAssistant {
        id: assistant

        bundle: shop.bundle
        spec: "shop"
        locale: shop.language.locale
        onExecute: (screenId, params) => shop.open(screenId, params)
        onPresent: presentationId => shop.present(presentationId)
    }
    Item {
        id: screens

        anchors { fill: parent; topMargin: shop.safeTop; bottomMargin: surface.restHeight }
        // Nothing behind a sheet can be touched, reached by keys or pressed by a screen reader.
        enabled: !surface.modal && !presentation.visible

        TopBar {
            id: top

            anchors { left: parent.left; right: parent.right; leftMargin: 8; rightMargin: 8 }
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

            objectName: "navigator"
            anchors { top: top.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
            onOpened: (screenId, params) => shop.open(screenId, params)
            onPresent: presentationId => shop.present(presentationId)
        }
    }
    ZelvoraCommandSurface {
        id: surface

        objectName: "surface"
        assistant: assistant
        answerTime: shop.pace > 0 ? 4000 : 0
        safeBottom: shop.safeBottom
        safeTop: shop.safeTop
        enabled: !presentation.visible
        onReply: text => shop.replies.say(text)
        onSilence: shop.replies.hush()
    }
    PresentationSheet {
        id: presentation

        surroundings: shop
        rightToLeft: shop.LayoutMirroring.enabled
        safeBottom: shop.safeBottom
        onOpenScreen: (screenId, params) => shop.open(screenId, params)
    }
}
