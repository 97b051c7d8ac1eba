import QtQuick

/// Shows a presentation of the spec over the screen.
Sheet {
    id: presentation

    property string presentationId

    signal open(string screenId, var params)

    shown: presentationId !== ""
    onDismissed: presentationId = ""
    // What was shown stays while it goes down.
    onPresentationIdChanged: if (presentationId !== "") loader.source = Screens.presentationSource(presentationId)

    Loader {
        id: loader

        objectName: "presented"
        width: parent.width
    }
    Connections {
        target: loader.item
        ignoreUnknownSignals: true

        function onOpen(screenId: string, params: var) {
            presentation.open(screenId, params)
        }
        function onDone() {
            presentation.presentationId = ""
        }
    }
}
