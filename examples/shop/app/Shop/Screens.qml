pragma Singleton
import QtQuick

/// Which file shows a screen or a presentation of the spec, and under which title.
QtObject {
    readonly property var screens: ({
        main: ["HomeScreen", "Meadow"],
        query: ["SearchScreen", qsTr("Search")],
        catalog: ["CategoriesScreen", qsTr("Categories")],
        results: ["ResultsScreen", qsTr("Products")],
        detail: ["DetailScreen", qsTr("Product")],
        opinions: ["ReviewsScreen", qsTr("Reviews")],
        basket: ["CartScreen", qsTr("Your cart")],
        purchase_flow: ["CheckoutScreen", qsTr("Checkout")],
        purchases: ["OrdersScreen", qsTr("Orders")],
        parcel: ["TrackingScreen", qsTr("Track order")],
        refill: ["ReorderScreen", qsTr("Order again")],
        bookmarks: ["WishesScreen", qsTr("Wish list")],
        member: ["ProfileScreen", qsTr("Profile")],
        setup: ["SettingsScreen", qsTr("Settings")],
        faq: ["HelpScreen", qsTr("Help")],
        conversation: ["ChatScreen", qsTr("Chat")],
        map: ["MapScreen", qsTr("Our stores")],
        hours: ["HoursScreen", qsTr("Opening hours")],
        claims: ["RowsScreen", qsTr("Returns")],
        vouchers: ["RowsScreen", qsTr("Gift cards")],
        locations: ["RowsScreen", qsTr("Addresses")],
        wallet: ["RowsScreen", qsTr("Payment methods")],
        inbox: ["RowsScreen", qsTr("Notifications")],
        consent: ["RowsScreen", qsTr("Privacy")],
        hotline: ["RowsScreen", qsTr("Contact us")]
    })
    readonly property var presentations: ({
        fit_sheet: ["FitSheet", qsTr("Size guide")],
        seasonal_sheet: ["SeasonalSheet", qsTr("Spring promotion")],
        camera_overlay: ["CameraOverlay", qsTr("Bar code")],
        goodbye_dialog: ["GoodbyeDialog", qsTr("Sign out")]
    })
    /// What single screens are given besides their parameters.
    property var given: ({})

    function knows(screenId: string) : bool {
        return screens[screenId] !== undefined
    }

    function title(screenId: string) : string {
        return screens[screenId]?.[1] ?? ""
    }

    function presentationTitle(presentationId: string) : string {
        return presentations[presentationId]?.[1] ?? ""
    }

    function screenSource(screenId: string) : url {
        return Qt.resolvedUrl(screens[screenId][0] + ".qml")
    }

    function presentationSource(presentationId: string) : url {
        const file = presentations[presentationId]
        return file ? Qt.resolvedUrl(file[0] + ".qml") : ""
    }
}
