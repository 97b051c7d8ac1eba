<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CameraOverlay</name>
    <message>
        <source>Scan a bar code</source>
        <translation>Strichcode scannen</translation>
    </message>
    <message>
        <source>There is no camera in this example. Pick a code as if you had held it up.</source>
        <translation>In diesem Beispiel gibt es keine Kamera. Wähle einen Code, als hättest du ihn davorgehalten.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>CartScreen</name>
    <message>
        <source>Your cart is empty</source>
        <translation>Dein Warenkorb ist leer</translation>
    </message>
    <message>
        <source>Say “show me shoes”, or look around.</source>
        <translation>Sag „zeig mir Schuhe“ oder sieh dich um.</translation>
    </message>
    <message>
        <source>See what is popular</source>
        <translation>Beliebtes ansehen</translation>
    </message>
    <message numerus="yes">
        <source>%1, %2 each, %n pieces</source>
        <translation>
            <numerusform>%1, je %2, %n Stück</numerusform>
            <numerusform>%1, je %2, %n Stück</numerusform>
        </translation>
    </message>
    <message>
        <source>One %1 less</source>
        <translation>%1: eins weniger</translation>
    </message>
    <message>
        <source>Take %1 out of the cart</source>
        <translation>%1 aus dem Warenkorb nehmen</translation>
    </message>
    <message>
        <source>One %1 more</source>
        <translation>%1: eins mehr</translation>
    </message>
    <message>
        <source>Check out</source>
        <translation>Zur Kasse</translation>
    </message>
</context>
<context>
    <name>ChatScreen</name>
    <message>
        <source>Hello Noa, this is Tal. What can I do for you?</source>
        <translation>Hallo Noa, hier ist Tal. Was kann ich für dich tun?</translation>
    </message>
    <message>
        <source>My parcel was to come yesterday.</source>
        <translation>Mein Paket sollte gestern kommen.</translation>
    </message>
    <message>
        <source>I have looked it up: it left the depot this morning and is with you on Thursday before four.</source>
        <translation>Ich habe nachgesehen: Es hat heute Morgen das Lager verlassen und ist am Donnerstag vor vier bei dir.</translation>
    </message>
    <message>
        <source>Perfect, thank you!</source>
        <translation>Perfekt, danke!</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>You: %1</source>
        <translation>Du: %1</translation>
    </message>
    <message>
        <source>Tal: %1</source>
        <translation>Tal: %1</translation>
    </message>
</context>
<context>
    <name>CheckoutScreen</name>
    <message>
        <source>Thank you!</source>
        <translation>Danke!</translation>
    </message>
    <message>
        <source>Your order is on its way to the packers.</source>
        <translation>Deine Bestellung wird jetzt gepackt.</translation>
    </message>
    <message>
        <source>Track it</source>
        <translation>Verfolgen</translation>
    </message>
    <message>
        <source>Your cart is empty</source>
        <translation>Dein Warenkorb ist leer</translation>
    </message>
    <message>
        <source>See what is popular</source>
        <translation>Beliebtes ansehen</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Zuhause</translation>
    </message>
    <message>
        <source>12 Linden Street, Haifa</source>
        <translation>Lindenstraße 12, Haifa</translation>
    </message>
    <message>
        <source>Card ending in 4417</source>
        <translation>Karte mit Endziffern 4417</translation>
    </message>
    <message>
        <source>Charged when we ship</source>
        <translation>Wird beim Versand belastet</translation>
    </message>
    <message>
        <source>Standard delivery</source>
        <translation>Standardlieferung</translation>
    </message>
    <message>
        <source>Thursday to Friday</source>
        <translation>Donnerstag bis Freitag</translation>
    </message>
    <message>
        <source>Place order for %1</source>
        <translation>Für %1 bestellen</translation>
    </message>
</context>
<context>
    <name>DetailScreen</name>
    <message>
        <source>Take %1 off the wish list</source>
        <translation>%1 von der Wunschliste nehmen</translation>
    </message>
    <message>
        <source>Put %1 on the wish list</source>
        <translation>%1 auf die Wunschliste setzen</translation>
    </message>
    <message>
        <source>before %1</source>
        <translation>vorher %1</translation>
    </message>
    <message>
        <source>Add to cart</source>
        <translation>In den Warenkorb</translation>
    </message>
    <message>
        <source>Add %1 to the cart</source>
        <translation>%1 in den Warenkorb legen</translation>
    </message>
    <message numerus="yes">
        <source>%n in your cart</source>
        <translation>
            <numerusform>%n in deinem Warenkorb</numerusform>
            <numerusform>%n in deinem Warenkorb</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation>%1 von 5</translation>
    </message>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>%n Bewertung</numerusform>
            <numerusform>%n Bewertungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Size guide</source>
        <translation>Größentabelle</translation>
    </message>
    <message>
        <source>Yours: %1</source>
        <translation>Deine: %1</translation>
    </message>
</context>
<context>
    <name>FitSheet</name>
    <message>
        <source>Size guide</source>
        <translation>Größentabelle</translation>
    </message>
    <message>
        <source>Stand on a sheet of paper, measure from heel to toe, and pick your line.</source>
        <translation>Stell dich auf ein Blatt Papier, miss von der Ferse bis zur Zehe und wähle deine Zeile.</translation>
    </message>
    <message>
        <source>Size %1, %2 in Britain, %3 centimetres</source>
        <translation>Größe %1, britisch %2, %3 Zentimeter</translation>
    </message>
    <message>
        <source>Keep %1 as my size</source>
        <translation>%1 als meine Größe behalten</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>cm</source>
        <translation>cm</translation>
    </message>
</context>
<context>
    <name>GoodbyeDialog</name>
    <message>
        <source>Sign out?</source>
        <translation>Abmelden?</translation>
    </message>
    <message>
        <source>Your cart and your wishes stay until you come back.</source>
        <translation>Warenkorb und Wünsche bleiben, bis du wiederkommst.</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>Bleiben</translation>
    </message>
</context>
<context>
    <name>HelpScreen</name>
    <message>
        <source>How can we help?</source>
        <translation>Wie können wir helfen?</translation>
    </message>
    <message>
        <source>How do I return something?</source>
        <translation>Wie gebe ich etwas zurück?</translation>
    </message>
    <message>
        <source>Within 30 days, unworn. Say “return a product” and see what can go back.</source>
        <translation>Innerhalb von 30 Tagen, ungetragen. Sag „Artikel zurückgeben“ und sieh, was zurückgehen kann.</translation>
    </message>
    <message>
        <source>When does my order arrive?</source>
        <translation>Wann kommt meine Bestellung?</translation>
    </message>
    <message>
        <source>Within three working days. Say “where is my package” at any time.</source>
        <translation>Innerhalb von drei Werktagen. Sag jederzeit „wo ist mein Paket“.</translation>
    </message>
    <message>
        <source>What can I say to the shop?</source>
        <translation>Was kann ich dem Laden sagen?</translation>
    </message>
    <message>
        <source>Where you want to go, in your own words: “show me running shoes”, “open my cart”, “what size am I”.</source>
        <translation>Wohin du möchtest, in deinen Worten: „zeig mir Laufschuhe“, „öffne den Warenkorb“, „welche Größe habe ich“.</translation>
    </message>
    <message>
        <source>How do I pay with a gift card?</source>
        <translation>Wie zahle ich mit einer Geschenkkarte?</translation>
    </message>
    <message>
        <source>You need not do anything: your gift cards are used up first.</source>
        <translation>Du musst nichts tun: Deine Geschenkkarten werden zuerst aufgebraucht.</translation>
    </message>
    <message>
        <source>unfolded</source>
        <translation>aufgeklappt</translation>
    </message>
    <message>
        <source>folded</source>
        <translation>zugeklappt</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>Chat</translation>
    </message>
    <message>
        <source>Call us</source>
        <translation>Anrufen</translation>
    </message>
</context>
<context>
    <name>HomeScreen</name>
    <message>
        <source>Good morning, Noa</source>
        <translation>Guten Morgen, Noa</translation>
    </message>
    <message>
        <source>Good morning</source>
        <translation>Guten Morgen</translation>
    </message>
    <message>
        <source>What would you like to find today?</source>
        <translation>Was möchtest du heute finden?</translation>
    </message>
    <message>
        <source>Spring promotion</source>
        <translation>Frühlingsaktion</translation>
    </message>
    <message>
        <source>Up to 25% off the new season</source>
        <translation>Bis zu 25&#xa0;% auf die neue Saison</translation>
    </message>
    <message>
        <source>See what is new</source>
        <translation>Neues ansehen</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>Bestellungen</translation>
    </message>
    <message>
        <source>Wish list</source>
        <translation>Wunschliste</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Popular now</source>
        <translation>Jetzt beliebt</translation>
    </message>
    <message>
        <source>See all</source>
        <translation>Alle ansehen</translation>
    </message>
</context>
<context>
    <name>HoursScreen</name>
    <message>
        <source>Open now</source>
        <translation>Jetzt geöffnet</translation>
    </message>
    <message>
        <source>Meadow Harbour, until 20:00</source>
        <translation>Meadow Hafen, bis 20:00</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>Sonntag</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>Montag</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>Dienstag</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>Mittwoch</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>Donnerstag</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>Freitag</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>Samstag</translation>
    </message>
    <message>
        <source>Closed</source>
        <translation>Geschlossen</translation>
    </message>
</context>
<context>
    <name>MapScreen</name>
    <message>
        <source>Meadow Harbour</source>
        <translation>Meadow Hafen</translation>
    </message>
    <message>
        <source>4 Quay Road, open until 20:00</source>
        <translation>Kaistraße 4, geöffnet bis 20:00</translation>
    </message>
    <message>
        <source>Meadow Market</source>
        <translation>Meadow Markt</translation>
    </message>
    <message>
        <source>21 Market Square, open until 19:00</source>
        <translation>Marktplatz 21, geöffnet bis 19:00</translation>
    </message>
    <message>
        <source>Meadow Hill</source>
        <translation>Meadow Hügel</translation>
    </message>
    <message>
        <source>8 Upper Street, open until 18:00</source>
        <translation>Obere Straße 8, geöffnet bis 18:00</translation>
    </message>
    <message>
        <source>%1&#xa0;km</source>
        <translation>%1&#xa0;km</translation>
    </message>
</context>
<context>
    <name>OrdersScreen</name>
    <message>
        <source>Track</source>
        <translation>Verfolgen</translation>
    </message>
    <message>
        <source>Order again</source>
        <translation>Erneut bestellen</translation>
    </message>
</context>
<context>
    <name>ProductLine</name>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
</context>
<context>
    <name>ProductTile</name>
    <message>
        <source>%1, %2, %3, before %4</source>
        <translation>%1, %2, %3, vorher %4</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
</context>
<context>
    <name>ProfileScreen</name>
    <message>
        <source>You are signed out</source>
        <translation>Du bist abgemeldet</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>Bestellungen</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>Adressen</translation>
    </message>
    <message>
        <source>Payment methods</source>
        <translation>Zahlungsarten</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>Geschenkkarten</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Mitteilungen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Anmelden</translation>
    </message>
</context>
<context>
    <name>ReorderScreen</name>
    <message>
        <source>The same as last time?</source>
        <translation>Dasselbe wie letztes Mal?</translation>
    </message>
    <message>
        <source>Put all into the cart</source>
        <translation>Alles in den Warenkorb</translation>
    </message>
</context>
<context>
    <name>ResultsScreen</name>
    <message>
        <source>Popular</source>
        <translation>Beliebt</translation>
    </message>
    <message>
        <source>Newest</source>
        <translation>Neueste</translation>
    </message>
</context>
<context>
    <name>ReviewsScreen</name>
    <message>
        <source>2 days ago</source>
        <translation>Vor 2 Tagen</translation>
    </message>
    <message>
        <source>Wore it the whole weekend and forgot that it was new. Exactly as pictured.</source>
        <translation>Das ganze Wochenende getragen und vergessen, dass es neu war. Genau wie abgebildet.</translation>
    </message>
    <message>
        <source>Last week</source>
        <translation>Letzte Woche</translation>
    </message>
    <message>
        <source>Well made. Runs a little small: take half a size more.</source>
        <translation>Gut gemacht. Fällt etwas klein aus: nimm eine halbe Nummer größer.</translation>
    </message>
    <message>
        <source>In April</source>
        <translation>Im April</translation>
    </message>
    <message>
        <source>The second one I buy. The first has survived two winters.</source>
        <translation>Das zweite, das ich kaufe. Das erste hat zwei Winter überlebt.</translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation>%1 von 5</translation>
    </message>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>%n Bewertung</numerusform>
            <numerusform>%n Bewertungen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RowsScreen</name>
    <message>
        <source>You have 30 days to change your mind. Pack it up and bring it to any of our stores.</source>
        <translation>Du hast 30 Tage Zeit. Pack es ein und bring es in einen unserer Läden.</translation>
    </message>
    <message>
        <source>Rain jacket</source>
        <translation>Regenjacke</translation>
    </message>
    <message>
        <source>Order %1, until 1 June</source>
        <translation>Bestellung %1, bis 1. Juni</translation>
    </message>
    <message>
        <source>Wooden trains</source>
        <translation>Holzeisenbahnen</translation>
    </message>
    <message>
        <source>Order %1, until 11 May</source>
        <translation>Bestellung %1, bis 11. Mai</translation>
    </message>
    <message>
        <source>Our stores</source>
        <translation>Unsere Läden</translation>
    </message>
    <message>
        <source>Used up first when you pay.</source>
        <translation>Werden beim Zahlen zuerst aufgebraucht.</translation>
    </message>
    <message>
        <source>From Mira</source>
        <translation>Von Mira</translation>
    </message>
    <message>
        <source>Valid until December</source>
        <translation>Gültig bis Dezember</translation>
    </message>
    <message>
        <source>Birthday card</source>
        <translation>Geburtstagskarte</translation>
    </message>
    <message>
        <source>Valid until March</source>
        <translation>Gültig bis März</translation>
    </message>
    <message>
        <source>Where we deliver to.</source>
        <translation>Wohin wir liefern.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Zuhause</translation>
    </message>
    <message>
        <source>12 Linden Street, Haifa</source>
        <translation>Lindenstraße 12, Haifa</translation>
    </message>
    <message>
        <source>Work</source>
        <translation>Arbeit</translation>
    </message>
    <message>
        <source>3 Harbour Road, Haifa</source>
        <translation>Hafenweg 3, Haifa</translation>
    </message>
    <message>
        <source>How you pay.</source>
        <translation>Wie du zahlst.</translation>
    </message>
    <message>
        <source>Card ending in 4417</source>
        <translation>Karte mit Endziffern 4417</translation>
    </message>
    <message>
        <source>Expires 08/28, used first</source>
        <translation>Gültig bis 08/28, zuerst benutzt</translation>
    </message>
    <message>
        <source>Card ending in 9020</source>
        <translation>Karte mit Endziffern 9020</translation>
    </message>
    <message>
        <source>Expires 01/27</source>
        <translation>Gültig bis 01/27</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>Geschenkkarten</translation>
    </message>
    <message>
        <source>Two are new.</source>
        <translation>Zwei sind neu.</translation>
    </message>
    <message>
        <source>Your parcel is on its way</source>
        <translation>Dein Paket ist unterwegs</translation>
    </message>
    <message>
        <source>Order %1, today</source>
        <translation>Bestellung %1, heute</translation>
    </message>
    <message>
        <source>Price drop on your wish list</source>
        <translation>Preissenkung auf deiner Wunschliste</translation>
    </message>
    <message>
        <source>Canvas backpack, yesterday</source>
        <translation>Segeltuchrucksack, gestern</translation>
    </message>
    <message>
        <source>How is the rain jacket?</source>
        <translation>Wie ist die Regenjacke?</translation>
    </message>
    <message>
        <source>See what others say</source>
        <translation>Lies, was andere sagen</translation>
    </message>
    <message>
        <source>What we keep, and what we do not.</source>
        <translation>Was wir behalten und was nicht.</translation>
    </message>
    <message>
        <source>Commands stay on this phone</source>
        <translation>Befehle bleiben auf diesem Telefon</translation>
    </message>
    <message>
        <source>What you say is understood here; no recording is kept.</source>
        <translation>Was du sagst, wird hier verstanden; keine Aufnahme wird behalten.</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Only about your orders.</source>
        <translation>Nur zu deinen Bestellungen.</translation>
    </message>
    <message>
        <source>Your data</source>
        <translation>Deine Daten</translation>
    </message>
    <message>
        <source>Orders are kept for seven years, as the law asks.</source>
        <translation>Bestellungen bewahren wir sieben Jahre auf, wie es das Gesetz verlangt.</translation>
    </message>
    <message>
        <source>We are there from 8 to 20 o&apos;clock.</source>
        <translation>Wir sind von 8 bis 20 Uhr da.</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Anrufen</translation>
    </message>
    <message>
        <source>Live chat</source>
        <translation>Live-Chat</translation>
    </message>
    <message>
        <source>Answers within a minute</source>
        <translation>Antwortet innerhalb einer Minute</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
</context>
<context>
    <name>SavingTag</name>
    <message>
        <source>−%1%</source>
        <translation>−%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>Screens</name>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>Products</source>
        <translation>Artikel</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>Artikel</translation>
    </message>
    <message>
        <source>Reviews</source>
        <translation>Bewertungen</translation>
    </message>
    <message>
        <source>Your cart</source>
        <translation>Dein Warenkorb</translation>
    </message>
    <message>
        <source>Checkout</source>
        <translation>Kasse</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>Bestellungen</translation>
    </message>
    <message>
        <source>Track order</source>
        <translation>Sendung verfolgen</translation>
    </message>
    <message>
        <source>Order again</source>
        <translation>Erneut bestellen</translation>
    </message>
    <message>
        <source>Wish list</source>
        <translation>Wunschliste</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>Chat</translation>
    </message>
    <message>
        <source>Our stores</source>
        <translation>Unsere Läden</translation>
    </message>
    <message>
        <source>Opening hours</source>
        <translation>Öffnungszeiten</translation>
    </message>
    <message>
        <source>Returns</source>
        <translation>Rückgaben</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>Geschenkkarten</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>Adressen</translation>
    </message>
    <message>
        <source>Payment methods</source>
        <translation>Zahlungsarten</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Mitteilungen</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
    <message>
        <source>Contact us</source>
        <translation>Kontakt</translation>
    </message>
    <message>
        <source>Size guide</source>
        <translation>Größentabelle</translation>
    </message>
    <message>
        <source>Spring promotion</source>
        <translation>Frühlingsaktion</translation>
    </message>
    <message>
        <source>Bar code</source>
        <translation>Strichcode</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>Abmelden</translation>
    </message>
</context>
<context>
    <name>SearchScreen</name>
    <message>
        <source>Search products</source>
        <translation>Artikel suchen</translation>
    </message>
    <message>
        <source>shoe</source>
        <translation>Schuh</translation>
    </message>
    <message>
        <source>coat</source>
        <translation>Mantel</translation>
    </message>
    <message>
        <source>shirt</source>
        <translation>Hemd</translation>
    </message>
    <message>
        <source>mug</source>
        <translation>Becher</translation>
    </message>
    <message>
        <source>train</source>
        <translation>Eisenbahn</translation>
    </message>
    <message>
        <source>You looked at</source>
        <translation>Zuletzt angesehen</translation>
    </message>
    <message numerus="yes">
        <source>%n found</source>
        <translation>
            <numerusform>%n gefunden</numerusform>
            <numerusform>%n gefunden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SeasonalSheet</name>
    <message>
        <source>Spring is here</source>
        <translation>Der Frühling ist da</translation>
    </message>
    <message>
        <source>Up to 25% off shoes, dresses and bags. Until the end of May, in all stores and here.</source>
        <translation>Bis zu 25&#xa0;% auf Schuhe, Kleider und Taschen. Bis Ende Mai, in allen Läden und hier.</translation>
    </message>
    <message>
        <source>See all deals</source>
        <translation>Alle Angebote</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
</context>
<context>
    <name>SettingsScreen</name>
    <message>
        <source>Sound and look</source>
        <translation>Ton und Aussehen</translation>
    </message>
    <message>
        <source>Spoken replies</source>
        <translation>Gesprochene Antworten</translation>
    </message>
    <message>
        <source>Answers are read aloud</source>
        <translation>Antworten werden vorgelesen</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Large text</source>
        <translation>Große Schrift</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Gewählt</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Mitteilungen</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
</context>
<context>
    <name>Stars</name>
    <message>
        <source>%1 of 5 stars</source>
        <translation>%1 von 5 Sternen</translation>
    </message>
</context>
<context>
    <name>Stock</name>
    <message>
        <source>Trail running shoe</source>
        <translation>Trailschuh</translation>
    </message>
    <message>
        <source>Grips wet rock and soft ground. A rock plate under the ball of the foot, 6&#xa0;mm drop, laces that stay tied.</source>
        <translation>Hält auf nassem Fels und weichem Boden. Schutzplatte unter dem Ballen, 6&#xa0;mm Sprengung, Schnürsenkel, die zubleiben.</translation>
    </message>
    <message>
        <source>City sneaker</source>
        <translation>Stadtsneaker</translation>
    </message>
    <message>
        <source>Canvas and leather on a sole that walks all day. Wipes clean.</source>
        <translation>Segeltuch und Leder auf einer Sohle für den ganzen Tag. Lässt sich abwischen.</translation>
    </message>
    <message>
        <source>Rain jacket</source>
        <translation>Regenjacke</translation>
    </message>
    <message>
        <source>Keeps a day of rain out and packs into its own pocket. Taped seams, a hood that turns with you.</source>
        <translation>Hält einen Regentag ab und passt in die eigene Tasche. Verklebte Nähte, eine Kapuze, die sich mitdreht.</translation>
    </message>
    <message>
        <source>Canvas backpack</source>
        <translation>Segeltuchrucksack</translation>
    </message>
    <message>
        <source>Waxed canvas, 18 litres, a sleeve for the laptop and one for the bottle.</source>
        <translation>Gewachstes Segeltuch, 18 Liter, ein Fach für den Laptop und eines für die Flasche.</translation>
    </message>
    <message>
        <source>Linen shirt</source>
        <translation>Leinenhemd</translation>
    </message>
    <message>
        <source>Washed linen that is soft from the first day.</source>
        <translation>Gewaschenes Leinen, weich vom ersten Tag an.</translation>
    </message>
    <message>
        <source>Summer dress</source>
        <translation>Sommerkleid</translation>
    </message>
    <message>
        <source>Light cotton with pockets. Falls just below the knee.</source>
        <translation>Leichte Baumwolle mit Taschen. Reicht bis knapp unters Knie.</translation>
    </message>
    <message>
        <source>Winter coat</source>
        <translation>Wintermantel</translation>
    </message>
    <message>
        <source>Recycled wool with a warm lining, down to minus ten.</source>
        <translation>Recycelte Wolle mit warmem Futter, bis minus zehn.</translation>
    </message>
    <message>
        <source>Wooden train</source>
        <translation>Holzeisenbahn</translation>
    </message>
    <message>
        <source>Beech wood and water-based paint. From three years.</source>
        <translation>Buchenholz und Farbe auf Wasserbasis. Ab drei Jahren.</translation>
    </message>
    <message>
        <source>Stoneware mug</source>
        <translation>Steingutbecher</translation>
    </message>
    <message>
        <source>Thrown by hand, holds 350&#xa0;ml, goes into the dishwasher.</source>
        <translation>Von Hand gedreht, fasst 350&#xa0;ml, spülmaschinenfest.</translation>
    </message>
    <message>
        <source>Shoes</source>
        <translation>Schuhe</translation>
    </message>
    <message>
        <source>Coats</source>
        <translation>Mäntel</translation>
    </message>
    <message>
        <source>Shirts</source>
        <translation>Hemden</translation>
    </message>
    <message>
        <source>Dresses</source>
        <translation>Kleider</translation>
    </message>
    <message>
        <source>Bags</source>
        <translation>Taschen</translation>
    </message>
    <message>
        <source>Toys</source>
        <translation>Spielzeug</translation>
    </message>
    <message>
        <source>Kitchen</source>
        <translation>Küche</translation>
    </message>
    <message>
        <source>Arrives Thursday</source>
        <translation>Kommt am Donnerstag</translation>
    </message>
    <message>
        <source>On its way</source>
        <translation>Unterwegs</translation>
    </message>
    <message>
        <source>Trail running shoe and a mug</source>
        <translation>Trailschuh und ein Becher</translation>
    </message>
    <message>
        <source>Delivered 2 May</source>
        <translation>Geliefert am 2. Mai</translation>
    </message>
    <message>
        <source>Delivered</source>
        <translation>Geliefert</translation>
    </message>
    <message>
        <source>Delivered 11 April</source>
        <translation>Geliefert am 11. April</translation>
    </message>
    <message>
        <source>2 wooden trains</source>
        <translation>2 Holzeisenbahnen</translation>
    </message>
    <message>
        <source>Deals</source>
        <translation>Angebote</translation>
    </message>
    <message>
        <source>New arrivals</source>
        <translation>Neuheiten</translation>
    </message>
    <message>
        <source>All products</source>
        <translation>Alle Artikel</translation>
    </message>
    <message>
        <source>en_US</source>
        <comment>the locale that numbers are written by</comment>
        <translation>de_DE</translation>
    </message>
    <message>
        <source>€%1</source>
        <comment>a price</comment>
        <translation>%1&#xa0;€</translation>
    </message>
</context>
<context>
    <name>Sum</name>
    <message>
        <source>Products</source>
        <translation>Artikel</translation>
    </message>
    <message>
        <source>Delivery</source>
        <translation>Lieferung</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Kostenlos</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Summe</translation>
    </message>
</context>
<context>
    <name>TopBar</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Read answers aloud</source>
        <translation>Antworten vorlesen</translation>
    </message>
    <message>
        <source>Mute answers</source>
        <translation>Antworten stummschalten</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message numerus="yes">
        <source>Cart, %n pieces</source>
        <translation>
            <numerusform>Warenkorb, %n Stück</numerusform>
            <numerusform>Warenkorb, %n Stück</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrackingScreen</name>
    <message>
        <source>Ordered</source>
        <translation>Bestellt</translation>
    </message>
    <message>
        <source>Monday, 18:20</source>
        <translation>Montag, 18:20</translation>
    </message>
    <message>
        <source>Packed</source>
        <translation>Gepackt</translation>
    </message>
    <message>
        <source>Tuesday, 9:05</source>
        <translation>Dienstag, 9:05</translation>
    </message>
    <message>
        <source>On its way</source>
        <translation>Unterwegs</translation>
    </message>
    <message>
        <source>Left the depot in Haifa at 7:40</source>
        <translation>Hat das Lager in Haifa um 7:40 verlassen</translation>
    </message>
    <message>
        <source>Delivered</source>
        <translation>Geliefert</translation>
    </message>
    <message>
        <source>Expected on Thursday</source>
        <translation>Erwartet am Donnerstag</translation>
    </message>
    <message>
        <source>Order %1</source>
        <translation>Bestellung %1</translation>
    </message>
    <message>
        <source>Arrives Thursday</source>
        <translation>Kommt am Donnerstag</translation>
    </message>
    <message>
        <source>between 14:00 and 16:00</source>
        <translation>zwischen 14:00 und 16:00</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>to come</source>
        <translation>kommt noch</translation>
    </message>
    <message>
        <source>Ask about this order</source>
        <translation>Zu dieser Bestellung fragen</translation>
    </message>
</context>
<context>
    <name>WishesScreen</name>
    <message>
        <source>No wishes yet</source>
        <translation>Noch keine Wünsche</translation>
    </message>
    <message>
        <source>Tap the heart of a product to keep it here.</source>
        <translation>Tippe auf das Herz eines Artikels, um ihn hier zu behalten.</translation>
    </message>
</context>
</TS>
