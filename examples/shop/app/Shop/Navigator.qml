import QtQuick
import Zelvora

/// The screens that were opened one from another; the last one is seen.
Item {
    id: navigator

    required property var replies
    required property ZelvoraAssistant assistant
    property var history: [{ screenId: "main", params: {} }]
    readonly property string screenId: history[history.length - 1].screenId
    readonly property var params: history[history.length - 1].params
    readonly property bool canGoBack: history.length > 1

    signal present(string presentationId)

    /// Home is where every way begins.
    function open(screenId: string, params: var) {
        const entry = { screenId, params: params ?? {} }
        history = screenId === "main" ? [entry] : [...history, entry]
        show(1)
    }

    function back() {
        if (!canGoBack) return
        history = history.slice(0, -1)
        show(-1)
    }

    function show(direction: int) {
        const given = { params: navigator.params }
        if (Lists.of[screenId]) given.list = Lists.of[screenId]
        if (screenId === "setup") given.replies = replies
        if (screenId === "query") given.assistant = assistant
        loader.setSource(Screens.screenSource(screenId), given)
        entrance.from = 36 * direction
        entrance.restart()
        fade.restart()
    }

    clip: true
    Component.onCompleted: show(0)

    Loader {
        id: loader

        width: navigator.width
        height: navigator.height
    }
    Connections {
        target: loader.item
        ignoreUnknownSignals: true

        function onOpen(screenId: string, params: var) {
            navigator.open(screenId, params)
        }
        function onPresent(presentationId: string) {
            navigator.present(presentationId)
        }
    }
    NumberAnimation {
        id: entrance

        target: loader
        property: "x"
        to: 0
        duration: Theme.pace
        easing.type: Easing.OutCubic
    }
    NumberAnimation {
        id: fade

        target: loader
        property: "opacity"
        from: Theme.pace > 0 ? 0 : 1
        to: 1
        duration: Theme.pace
    }
}
