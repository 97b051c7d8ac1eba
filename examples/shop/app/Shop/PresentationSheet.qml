import QtQuick
import QtQuick.Layouts

/// Shows a presentation of the spec over the screen.
Sheet {
    id: presentation

    property string presentationId

    signal openScreen(string screenId, var params)

    title: Screens.presentationTitle(presentationId)
    onPresentationIdChanged: {
        if (presentationId === "") {
            close()
            return
        }
        // The old content stays while the sheet goes down.
        loader.source = Screens.presentationSource(presentationId)
        open()
    }
    onAboutToHide: presentationId = ""

    Loader {
        id: loader

        objectName: "presented"
        Layout.fillWidth: true
    }
    Connections {
        target: loader.item
        ignoreUnknownSignals: true

        function onOpen(screenId: string, params: var) {
            presentation.openScreen(screenId, params)
        }
        function onDone() {
            presentation.presentationId = ""
        }
    }
}
