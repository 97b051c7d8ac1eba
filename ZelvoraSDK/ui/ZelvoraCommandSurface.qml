pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zelvora
import Zelvora.Private as Private

/// The conversation with an assistant, laid over a page: a bar to type and to speak, what is heard, the
/// answer, the choices, and what to do when something is amiss. It fills its parent; what it does not cover
/// can still be touched.
Item {
    id: root

    property ZelvoraAssistant assistant: null
    /// If on, a pill replaces the bar at rest; its keyboard button starts typing.
    property bool compact: false
    property string placeholder: qsTr("Where would you like to go?")
    property string choicesTitle: qsTr("Did you mean …")
    /// How long an answer is shown, in milliseconds; 0: until it is closed.
    property int answerTime: 6000
    /// The edges that a notch or a bar of the system covers.
    property real safeLeft: insets.leftEdge
    property real safeTop: insets.topEdge
    property real safeRight: insets.rightEdge
    property real safeBottom: insets.bottomEdge
    /// How far the keyboard on the screen reaches above the lower edge of this item.
    property real keyboardHeight: insets.keyboard

    /// "rest", "typing", "asking", "listening", "thinking", "answer", "heard", "permission",
    /// "microphone" or "choices".
    readonly property string mode: {
        if (!assistant)
            return "rest"
        if (assistant.asking)
            return "asking"
        if (assistant.state === ZelvoraMicState.Listening)
            return "listening"
        if (assistant.state === ZelvoraMicState.Processing)
            return "thinking"
        if (drawer.visible)
            return "choices"
        return shown !== "rest" ? shown : field.typing || field.text !== "" ? "typing" : "rest"
    }
    /// The height that the surface covers at rest: what a page should leave free at its end.
    readonly property real restHeight: stack.anchors.bottomMargin + (pill.item ? pill.item.height : field.implicitHeight)
                                       + (hints.length > 0 ? notice.hintHeight : 0) + 12
    /// Whether the choices cover everything: the page should not be reachable then.
    readonly property bool modal: drawer.visible

    /// For a vibration or a sound: "start", "stop", "success", "failure" or "select".
    signal haptic(string kind)
    /// An answer that may be read aloud.
    signal reply(string text)
    /// The microphone opens, so reading aloud must stop.
    signal silence()

    /// Puts `text` into the field, to be changed and sent.
    function edit(text: string) {
        shown = "rest"
        wantsField = true
        field.take(text)
        field.focusField()
    }

    /// Dismisses an answer or the choices.
    function dismiss() {
        shown = "rest"
        drawer.close()
    }

    function listen() {
        if (!assistant)
            return
        byVoice = true
        byKeys = (Window.activeFocusItem as T.Control)?.visualFocus ?? false
        shown = "rest"
        assistant.tapMic()
    }

    // What the last outcome left to be shown: "rest" when nothing.
    property string shown: "rest"
    property string said: ""
    property bool byVoice: false
    property bool byKeys: false  // the focus then follows what is shown
    property bool wantsField: false
    property string lastWords: ""
    property var offered: []
    readonly property real band: Math.min(640, width - safeLeft - safeRight - 24)
    readonly property bool isShort: height < 420
    readonly property var hints: {
        if (!assistant || assistant.history.length > 0 || compact || (mode !== "rest" && (mode !== "typing" || field.text !== "")) || isShort)
            return []
        const most = ZelvoraTheme.textScale > 1.4 || height < 560 ? 2 : 3
        return Array.from(assistant.examples).slice(0, height < 560 && ZelvoraTheme.textScale > 1.4 ? 0 : most)
    }

    width: parent?.width ?? 0
    height: parent?.height ?? 0

    Private.Insets { id: insets }
    // Runs once what is shown has its place.
    Timer {
        id: soon

        interval: 0
        onTriggered: root.followFocus()
    }
    Shortcut {
        sequences: ["Escape", "Back"]
        enabled: root.visible && root.enabled
                 && (root.mode === "asking" || root.mode === "listening" || (root.mode === "thinking" && root.byVoice))
        onActivated: root.assistant.cancel()
    }
    Connections {
        target: root.assistant

        function onStateChanged() {
            if (root.assistant.state === ZelvoraMicState.Listening) {
                root.byVoice = true
                root.shown = "rest"
                root.silence()
                root.haptic("start")
            } else if (root.assistant.state === ZelvoraMicState.Processing) {
                root.lastWords = root.assistant.partialText || root.assistant.history[0] || ""
                root.haptic("stop")
            }
        }
        function onExecute(screenId: string, params: var, say: string) {
            root.settle(say !== "" ? "answer" : "rest", say, "success")
        }
        function onPresent(presentationId: string, params: var, say: string) {
            root.settle(say !== "" ? "answer" : "rest", say, "success")
        }
        function onOffer(choices: var, say: string) {
            root.settle("rest", say, "select")
        }
        function onUnsupported(say: string) {
            const refused = root.byVoice && root.assistant.permissionDenied
            root.settle(refused ? "permission" : "heard",
                        root.assistant.heardUnclearly ? qsTr("Did I hear that right?") : say, "failure")
            if (!refused && root.assistant.heardText !== "")
                field.take(root.assistant.heardText)
        }
        function onChoicesChanged() {
            if (root.assistant.choices.length === 0) {
                drawer.close()
                return
            }
            root.offered = root.assistant.choices
            drawer.open()
        }
        function onPermissionDeniedChanged() {
            if (root.assistant.permissionDenied)
                root.shown = "permission"
        }
        function onMicrophoneMissingChanged() {
            if (root.assistant.microphoneMissing)
                root.settle("microphone", root.assistant.error, "failure")
        }
    }

    function followFocus() {
        const bar = live.item as Private.ListeningBar
        if (bar)
            bar.focusStop()
        else if (shown === "heard")
            field.focusField()
        else
            field.focusMic()
    }

    function settle(kind: string, say: string, felt: string) {
        shown = kind
        said = say
        haptic(felt)
        if (say !== "")
            reply(say)
        if (kind === "answer" && answerTime > 0)
            patience.restart()
    }

    function submit(text: string) {
        byVoice = false
        wantsField = false
        shown = "rest"
        lastWords = text
        assistant?.route(text)
    }

    function act(key: string) {
        if (key === "retry")
            listen()
        else if (key === "change")
            edit(assistant.heardText)
        else
            edit(field.text)
    }

    Timer {
        id: patience

        // A user with the focus on the answer still reads it.
        interval: Math.max(1, root.answerTime)
        onTriggered: {
            if (root.shown === "answer" && !notice.hasFocus)
                root.shown = "rest"
        }
    }
    Column {
        id: stack

        anchors {
            bottom: parent.bottom
            bottomMargin: 12 + Math.max(root.safeBottom, root.keyboardHeight)
        }
        x: root.safeLeft + 12 + (root.width - root.safeLeft - root.safeRight - 24 - width) / 2
        width: root.band
        spacing: 8

        Private.Notice {
            id: notice

            readonly property real room: root.height - root.safeTop - stack.anchors.bottomMargin - barPlace.height - 20
            readonly property bool asksBack: root.mode === "heard" && (root.assistant?.heardUnclearly ?? false)
            readonly property real hintHeight: implicitHeight + stack.spacing
            readonly property bool hasFocus: {
                for (let at = Window.activeFocusItem; at; at = at.parent)
                    if (at === notice)
                        return true
                return false
            }

            objectName: "notice"
            width: parent.width
            mostHeight: Math.max(0, room)
            theme: root.ZelvoraTheme
            plain: root.hints.length > 0
            closes: root.mode === "answer" || root.mode === "heard" || root.mode === "permission" || root.mode === "microphone"
            badge: root.mode === "answer" ? "badge_success"
                 : root.mode === "heard" && !asksBack ? "badge_failure" : ""
            symbol: root.mode === "permission" || root.mode === "microphone" ? "mic.slash"
                  : root.mode === "asking" || asksBack ? "mic.fill" : ""
            title: {
                switch (root.mode) {
                case "answer":
                case "heard": return root.said
                case "asking": return qsTr("May this app use the microphone?")
                case "permission": return qsTr("The microphone is switched off for this app")
                case "microphone": return qsTr("No microphone can be used")
                default: return ""
                }
            }
            detail: {
                const heard = root.assistant?.heardText ?? ""
                switch (root.mode) {
                case "answer": return heard !== "" ? qsTr("You said: “%1”").arg(heard) : ""
                case "heard": return heard !== "" ? qsTr("I heard “%1”. Change it below and send it, or try one of these.").arg(heard) : ""
                case "asking": return qsTr("Answer the system's question, then speak.")
                case "permission": return qsTr("Allow it in the system's settings and try again, or type what you want.")
                case "microphone": return root.said
                default: return ""
                }
            }
            phrasesTitle: root.hints.length > 0 ? qsTr("Try saying")
                        : root.mode === "typing" && field.text === "" ? qsTr("Recent") : qsTr("Did you mean …")
            phrases: {
                if (!root.assistant)
                    return []
                switch (root.mode) {
                case "rest": return root.hints
                case "typing": return field.text === "" ? root.assistant.history.length > 0 ? Array.from(root.assistant.history).slice(0, 3) : root.hints
                                                        : root.assistant.suggest(field.text, 3)
                case "heard": return root.nearest()
                default: return []
                }
            }
            actions: {
                switch (root.mode) {
                case "answer": return root.assistant.heardText !== "" ? [{ key: "change", text: qsTr("Change"), quiet: true }] : []
                case "heard": return root.byVoice ? [{ key: "retry", text: qsTr("Speak again") }] : []
                case "permission":
                case "microphone": return [{ key: "retry", text: qsTr("Try again") }, { key: "type", text: qsTr("Type instead") }]
                default: return []
                }
            }
            onPicked: phrase => {
                field.text = ""
                root.submit(phrase)
            }
            onActed: key => root.act(key)
            onClosed: {
                root.dismiss()
                field.focusField()
            }
            Keys.onEscapePressed: root.dismiss()
        }
        Item {
            id: barPlace

            readonly property bool isLive: root.mode === "listening" || root.mode === "thinking"
            readonly property bool isPill: root.compact && !root.wantsField && !field.typing && !isLive
            property real wanted: isPill ? pill.item?.implicitHeight ?? 52 : isLive ? live.item?.implicitHeight ?? 56 : field.implicitHeight

            width: parent.width
            height: wanted

            Behavior on height {
                enabled: !root.ZelvoraTheme.reducedMotion

                NumberAnimation { duration: 180; easing.type: Easing.OutCubic }
            }

            Private.CommandField {
                id: field

                objectName: "field"
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                height: implicitHeight
                visible: !barPlace.isLive && !barPlace.isPill
                theme: root.ZelvoraTheme
                placeholder: root.placeholder
                asking: root.mode === "asking"
                history: root.assistant?.history ?? []
                onSubmitted: text => root.submit(text)
                onMicTapped: root.listen()
                Keys.onEscapePressed: event => {
                    event.accepted = root.mode !== "rest"
                    root.wantsField = false
                    field.text = ""
                    if (root.compact)
                        field.leave()
                    root.dismiss()
                }
            }
            Private.OnDemand {
                id: live

                wanted: barPlace.isLive
                onItemChanged: if (root.byKeys) soon.restart()
                component: Component {
                    Private.ListeningBar {
                        objectName: "live"
                        anchors { left: parent?.left; right: parent?.right; bottom: parent?.bottom }
                        height: barPlace.height
                        theme: root.ZelvoraTheme
                        words: root.mode === "listening" ? root.assistant.partialText : root.lastWords
                        thinking: root.mode === "thinking"
                        level: root.assistant?.audioLevel ?? 0
                        mostHeight: root.height - root.safeTop - stack.anchors.bottomMargin - 24
                        onStopped: root.assistant.stop()
                    }
                }
            }
            Private.OnDemand {
                id: pill

                wanted: barPlace.isPill
                component: Component {
                    Row {
                        anchors.horizontalCenter: parent?.horizontalCenter
                        spacing: 8

                        ZelvoraFloatingMic {
                            anchors.verticalCenter: parent.verticalCenter
                            onTap: root.listen()
                        }
                        Private.RoundButton {
                            objectName: "typeInstead"
                            anchors.verticalCenter: parent.verticalCenter
                            theme: root.ZelvoraTheme
                            symbol: "keyboard"
                            text: qsTr("Type a command")
                            onClicked: root.edit("")
                        }
                    }
                }
            }
        }
    }

    function nearest() : var {
        const words = assistant.heardText || lastWords
        const most = height < 560 ? 2 : 3
        const close = assistant.suggest(words, most)
        return close.length > 0 ? close : Array.from(assistant.examples).slice(0, most)
    }

    T.Drawer {
        id: drawer

        edge: Qt.BottomEdge
        modal: true
        focus: true
        dragMargin: 0
        interactive: opened
        width: Math.min(640, root.width)
        height: Math.min(sheet.wantedHeight + 28 + footer.height + root.safeBottom, root.height - root.safeTop - 24)
        x: (root.width - width) / 2
        onAboutToShow: {
            before = root.Window.activeFocusItem
            beforeReason = (before as T.Control)?.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason
        }
        onOpened: sheet.focusFirst()
        onClosed: {
            root.assistant?.dismissChoices()
            if (before?.visible)
                before.forceActiveFocus(beforeReason)
        }

        property Item before: null
        property int beforeReason: Qt.OtherFocusReason

        enter: Transition {
            SmoothedAnimation { velocity: root.ZelvoraTheme.reducedMotion ? -1 : 5; duration: root.ZelvoraTheme.reducedMotion ? 1 : -1 }
        }
        exit: Transition {
            SmoothedAnimation { velocity: root.ZelvoraTheme.reducedMotion ? -1 : 5; duration: root.ZelvoraTheme.reducedMotion ? 1 : -1 }
        }

        // The drawer's own is only as wide as the drawer.
        T.Overlay.modal: Item {
            id: behind

            Rectangle {
                x: -behind.x
                y: -behind.y
                width: behind.parent?.width ?? 0
                height: behind.parent?.height ?? 0
                color: Qt.rgba(0.04, 0.05, 0.05, 0.55 * drawer.position)
            }
        }

        background: Rectangle {
            radius: 28
            color: root.ZelvoraTheme.background
            // In a dark theme it would not stand out from the dimmed page behind it.
            border { width: root.ZelvoraTheme.dark ? 1 : 0; color: Qt.rgba(1, 1, 1, 0.16) }

            // The lower corners are square, at the edge of the screen.
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: parent.border.width }
                height: parent.radius
                color: parent.color
            }
        }

        FocusScope {
            id: paper

            anchors.fill: parent
            objectName: "choicesDrawer"
            // A popup does not inherit these.
            LayoutMirroring.enabled: root.LayoutMirroring.enabled
            LayoutMirroring.childrenInherit: true
            ZelvoraTheme.background: root.ZelvoraTheme.background
            ZelvoraTheme.surface: root.ZelvoraTheme.surface
            ZelvoraTheme.text: root.ZelvoraTheme.text
            ZelvoraTheme.accent: root.ZelvoraTheme.accent
            ZelvoraTheme.dark: root.ZelvoraTheme.dark
            ZelvoraTheme.textScale: root.ZelvoraTheme.textScale
            ZelvoraTheme.reducedMotion: root.ZelvoraTheme.reducedMotion
            ZelvoraTheme.icons: root.ZelvoraTheme.icons
            focus: true
            Keys.onEscapePressed: drawer.close()
            Keys.onBackPressed: drawer.close()
            Accessible.role: Accessible.Dialog
            Accessible.name: root.choicesTitle

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 10
                width: 38
                height: 5
                radius: 2.5
                color: root.ZelvoraTheme.edge
            }
            ZelvoraChoiceSheet {
                id: sheet

                objectName: "choices"
                anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 28; bottom: footer.top }
                focus: true
                title: root.choicesTitle
                say: root.said
                choices: root.offered
                onSelect: choice => {
                    root.haptic("select")
                    root.assistant.choose(choice)
                }
            }
            Item {
                id: footer

                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; bottomMargin: root.safeBottom }
                height: none.height + 16

                Private.WordButton {
                    id: none

                    objectName: "noneOfThese"
                    anchors { left: parent.left; right: parent.right; leftMargin: 16; rightMargin: 16 }
                    theme: root.ZelvoraTheme
                    text: qsTr("None of these")
                    onClicked: {
                        drawer.before = null
                        drawer.close()
                        root.edit(root.assistant.heardText || root.lastWords)
                    }
                }
            }
        }
    }
}
