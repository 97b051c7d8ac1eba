<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>CameraOverlay</name>
</context>
<context>
    <name>CartScreen</name>
    <message numerus="yes">
        <source>%1, %2 each, %n pieces</source>
        <translation>
            <numerusform>%1, %2 each, %n piece</numerusform>
            <numerusform>%1, %2 each, %n pieces</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ChatScreen</name>
</context>
<context>
    <name>CheckoutScreen</name>
</context>
<context>
    <name>DetailScreen</name>
    <message numerus="yes">
        <source>%n in your cart</source>
        <translation>
            <numerusform>%n in your cart</numerusform>
            <numerusform>%n in your cart</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>%n review</numerusform>
            <numerusform>%n reviews</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FitSheet</name>
</context>
<context>
    <name>GoodbyeDialog</name>
</context>
<context>
    <name>HelpScreen</name>
</context>
<context>
    <name>HomeScreen</name>
</context>
<context>
    <name>HoursScreen</name>
</context>
<context>
    <name>MapScreen</name>
</context>
<context>
    <name>OrdersScreen</name>
</context>
<context>
    <name>ProductLine</name>
</context>
<context>
    <name>ProductTile</name>
</context>
<context>
    <name>ProfileScreen</name>
</context>
<context>
    <name>ReorderScreen</name>
</context>
<context>
    <name>ResultsScreen</name>
</context>
<context>
    <name>ReviewsScreen</name>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>%n review</numerusform>
            <numerusform>%n reviews</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RowsScreen</name>
</context>
<context>
    <name>Screens</name>
</context>
<context>
    <name>SearchScreen</name>
    <message numerus="yes">
        <source>%n found</source>
        <translation>
            <numerusform>%n found</numerusform>
            <numerusform>%n found</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SeasonalSheet</name>
</context>
<context>
    <name>SettingsScreen</name>
</context>
<context>
    <name>Stars</name>
</context>
<context>
    <name>Stock</name>
</context>
<context>
    <name>Sum</name>
</context>
<context>
    <name>TopBar</name>
    <message numerus="yes">
        <source>Cart, %n pieces</source>
        <translation>
            <numerusform>Cart, %n piece</numerusform>
            <numerusform>Cart, %n pieces</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrackingScreen</name>
</context>
<context>
    <name>WishesScreen</name>
</context>
</TS>
