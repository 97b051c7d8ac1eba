import QtQuick
import Zelvora

Item {
    Text { id: screen; objectName: "screen"; anchors.centerIn: parent }
    ZelvoraAssistant {
        id: assistant
        bundle: "examples/shop"; spec: "shop"
        onExecute: screenId => screen.text = screenId
    }
    ZelvoraMicButton { state: assistant.state; onTap: assistant.tapMic() }
}
