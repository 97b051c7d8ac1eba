import Zelvora

/// The symbol of a voice state, as large as a system symbol in a font of `pixelSize`.
Symbol {
    property int voiceState: ZelvoraMicState.Idle
    property real pixelSize: 18

    name: ["mic.fill", "waveform", "hourglass"][voiceState]
    color: palette.windowText
    width: Math.round(pixelSize * 1.2)
    height: width
}
