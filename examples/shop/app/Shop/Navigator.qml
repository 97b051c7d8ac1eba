import QtQuick
import QtQuick.Templates as T

/// The stack of opened screens: the last one is shown, and those below keep their scroll positions. A screen
/// is in the stack only once.
T.StackView {
    id: navigator

    readonly property string screenId: (currentItem as Page)?.screenId ?? "main"
    readonly property var params: (currentItem as Page)?.params ?? ({})
    readonly property bool canGoBack: depth > 1
    property var waiting: null

    signal opened(string screenId, var params)
    signal present(string presentationId)

    /// Home is always the first screen.
    function open(screenId: string, params: var) {
        if (busy) {
            waiting = { screenId, params }
            return
        }
        const wanted = params ?? {}
        const operation = Theme.pace > 0 ? T.StackView.Transition : T.StackView.Immediate
        const known = screenId === "main" ? get(0)
            : find(page => page.screenId === screenId && JSON.stringify(page.params) === JSON.stringify(wanted))
        if (known === currentItem)
            return
        leave()
        if (known)
            pop(known, operation)
        else
            push(Screens.screenSource(screenId), Object.assign({ screenId, params: wanted }, Screens.given[screenId]), operation)
        arrive(known !== null)
    }

    function back() {
        if (busy || !canGoBack)
            return
        leave()
        pop(Theme.pace > 0 ? T.StackView.Transition : T.StackView.Immediate)
        arrive(true)
    }

    function startAgain() {
        if (depth > 1)
            pop(null, T.StackView.Immediate)
        currentItem.contentY = 0
    }

    property var focusOf: new Map()

    function leave() {
        const focused = Window.activeFocusItem
        let inside = false
        for (let at = focused; at; at = at.parent)
            inside = inside || at === currentItem
        focusOf.set(currentItem, inside ? { item: focused, shown: focused.visualFocus === true } : null)
    }

    /// A screen that comes back gets the focus where it was; a new one at its beginning.
    function arrive(isBack: bool) {
        const before = isBack ? focusOf.get(currentItem) : null
        if (before)
            before.item.forceActiveFocus(before.shown ? Qt.TabFocusReason : Qt.OtherFocusReason)
        else
            currentItem.forceActiveFocus(Qt.OtherFocusReason)
    }

    // Taps on a screen that is leaving are ignored.
    enabled: !busy
    clip: true
    onBusyChanged: {
        if (busy || !waiting)
            return
        const next = waiting
        waiting = null
        open(next.screenId, next.params)
    }
    initialItem: HomeScreen { screenId: "main" }

    Connections {
        target: navigator.currentItem
        ignoreUnknownSignals: true

        function onOpen(screenId: string, params: var) {
            navigator.opened(screenId, params)
        }
        function onPresent(presentationId: string) {
            navigator.present(presentationId)
        }
    }

    component Slide: Transition {
        id: slide

        property real from: 0

        NumberAnimation {
            property: "x"
            from: slide.from
            to: 0
            duration: Theme.pace
            easing.type: Easing.OutCubic
        }
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.pace
        }
    }
    component Vanish: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Theme.pace / 2
        }
    }

    pushEnter: Slide { from: navigator.mirrored ? -36 : 36 }
    pushExit: Vanish {}
    popEnter: Slide { from: navigator.mirrored ? 36 : -36 }
    popExit: Vanish {}
}
