import QtQuick
import Zelvora

/// Lets the customer pick what was meant.
Sheet {
    id: sheet

    required property ZelvoraAssistant assistant

    shown: assistant.choices.length > 0
    margin: 0
    onDismissed: assistant.dismissChoices()

    ZelvoraChoiceSheet {
        objectName: "choices"
        palette.window: Theme.sheet
        palette.base: Theme.dark ? Theme.sunken : Theme.surface
        width: parent.width
        height: 132 + 49 * sheet.assistant.choices.length
        title: qsTr("Did you mean …")
        say: sheet.assistant.say
        choices: sheet.assistant.choices
        onSelect: choice => sheet.assistant.choose(choice)
    }
}
