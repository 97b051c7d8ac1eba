<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he" sourcelanguage="en">
<context>
    <name>CameraOverlay</name>
    <message>
        <source>Scan a bar code</source>
        <translation>סריקת ברקוד</translation>
    </message>
    <message>
        <source>There is no camera in this example. Pick a code as if you had held it up.</source>
        <translation>בדוגמה זו אין מצלמה. בחרו קוד כאילו החזקתם אותו מולה.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>ביטול</translation>
    </message>
</context>
<context>
    <name>CartScreen</name>
    <message>
        <source>Your cart is empty</source>
        <translation>העגלה שלך ריקה</translation>
    </message>
    <message>
        <source>Say “show me shoes”, or look around.</source>
        <translation>אפשר לומר „תראה לי נעליים“, או לחפש מסביב.</translation>
    </message>
    <message>
        <source>See what is popular</source>
        <translation>מה פופולרי</translation>
    </message>
    <message numerus="yes">
        <source>%1, %2 each, %n pieces</source>
        <translation>
            <numerusform>%1, %2, יחידה אחת</numerusform>
            <numerusform>%1, %2 ליחידה, %n יחידות</numerusform>
        </translation>
    </message>
    <message>
        <source>One %1 less</source>
        <translation>%1: אחד פחות</translation>
    </message>
    <message>
        <source>Take %1 out of the cart</source>
        <translation>להוציא מהעגלה: %1</translation>
    </message>
    <message>
        <source>One %1 more</source>
        <translation>%1: עוד אחד</translation>
    </message>
    <message>
        <source>Check out</source>
        <translation>לקופה</translation>
    </message>
</context>
<context>
    <name>ChatScreen</name>
    <message>
        <source>Hello Noa, this is Tal. What can I do for you?</source>
        <translation>שלום נועה, מדבר טל. במה אפשר לעזור?</translation>
    </message>
    <message>
        <source>My parcel was to come yesterday.</source>
        <translation>החבילה שלי הייתה אמורה להגיע אתמול.</translation>
    </message>
    <message>
        <source>I have looked it up: it left the depot this morning and is with you on Thursday before four.</source>
        <translation>בדקתי: היא יצאה הבוקר מהמחסן ותגיע אלייך ביום חמישי לפני ארבע.</translation>
    </message>
    <message>
        <source>Perfect, thank you!</source>
        <translation>מצוין, תודה!</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>היום</translation>
    </message>
    <message>
        <source>You: %1</source>
        <translation>את: %1</translation>
    </message>
    <message>
        <source>Tal: %1</source>
        <translation>טל: %1</translation>
    </message>
</context>
<context>
    <name>CheckoutScreen</name>
    <message>
        <source>Thank you!</source>
        <translation>תודה!</translation>
    </message>
    <message>
        <source>Your order is on its way to the packers.</source>
        <translation>ההזמנה שלך בדרך לאריזה.</translation>
    </message>
    <message>
        <source>Track it</source>
        <translation>למעקב</translation>
    </message>
    <message>
        <source>Your cart is empty</source>
        <translation>העגלה שלך ריקה</translation>
    </message>
    <message>
        <source>See what is popular</source>
        <translation>מה פופולרי</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>בית</translation>
    </message>
    <message>
        <source>12 Linden Street, Haifa</source>
        <translation>רחוב הליבנה 12, חיפה</translation>
    </message>
    <message>
        <source>Card ending in 4417</source>
        <translation>כרטיס שמסתיים ב-4417</translation>
    </message>
    <message>
        <source>Charged when we ship</source>
        <translation>יחויב בעת המשלוח</translation>
    </message>
    <message>
        <source>Standard delivery</source>
        <translation>משלוח רגיל</translation>
    </message>
    <message>
        <source>Thursday to Friday</source>
        <translation>חמישי עד שישי</translation>
    </message>
    <message>
        <source>Place order for %1</source>
        <translation>להזמין ב-%1</translation>
    </message>
</context>
<context>
    <name>DetailScreen</name>
    <message>
        <source>Take %1 off the wish list</source>
        <translation>להסיר מרשימת המשאלות: %1</translation>
    </message>
    <message>
        <source>Put %1 on the wish list</source>
        <translation>להוסיף לרשימת המשאלות: %1</translation>
    </message>
    <message>
        <source>before %1</source>
        <translation>לפני כן %1</translation>
    </message>
    <message>
        <source>Add to cart</source>
        <translation>להוסיף לעגלה</translation>
    </message>
    <message>
        <source>Add %1 to the cart</source>
        <translation>להוסיף לעגלה: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n in your cart</source>
        <translation>
            <numerusform>%n בעגלה שלך</numerusform>
            <numerusform>%n בעגלה שלך</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation>%1 מתוך 5</translation>
    </message>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>ביקורת אחת</numerusform>
            <numerusform>%n ביקורות</numerusform>
        </translation>
    </message>
    <message>
        <source>Size guide</source>
        <translation>טבלת מידות</translation>
    </message>
    <message>
        <source>Yours: %1</source>
        <translation>שלך: %1</translation>
    </message>
</context>
<context>
    <name>FitSheet</name>
    <message>
        <source>Size guide</source>
        <translation>טבלת מידות</translation>
    </message>
    <message>
        <source>Stand on a sheet of paper, measure from heel to toe, and pick your line.</source>
        <translation>עמדו על דף נייר, מדדו מהעקב עד הבוהן ובחרו את השורה שלכם.</translation>
    </message>
    <message>
        <source>Size %1, %2 in Britain, %3 centimetres</source>
        <translation>מידה %1, בבריטניה %2, %3 סנטימטר</translation>
    </message>
    <message>
        <source>Keep %1 as my size</source>
        <translation>לשמור %1 כמידה שלי</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>סגירה</translation>
    </message>
    <message>
        <source>cm</source>
        <translation>ס״מ</translation>
    </message>
</context>
<context>
    <name>GoodbyeDialog</name>
    <message>
        <source>Sign out?</source>
        <translation>להתנתק?</translation>
    </message>
    <message>
        <source>Your cart and your wishes stay until you come back.</source>
        <translation>העגלה והמשאלות שלך יישארו עד שתחזרי.</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>התנתקות</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>להישאר</translation>
    </message>
</context>
<context>
    <name>HelpScreen</name>
    <message>
        <source>How can we help?</source>
        <translation>איך אפשר לעזור?</translation>
    </message>
    <message>
        <source>How do I return something?</source>
        <translation>איך מחזירים מוצר?</translation>
    </message>
    <message>
        <source>Within 30 days, unworn. Say “return a product” and see what can go back.</source>
        <translation>תוך 30 יום, ללא שימוש. אמרו „להחזיר מוצר“ וראו מה אפשר להחזיר.</translation>
    </message>
    <message>
        <source>When does my order arrive?</source>
        <translation>מתי ההזמנה שלי תגיע?</translation>
    </message>
    <message>
        <source>Within three working days. Say “where is my package” at any time.</source>
        <translation>תוך שלושה ימי עסקים. אפשר תמיד לומר „איפה החבילה שלי“.</translation>
    </message>
    <message>
        <source>What can I say to the shop?</source>
        <translation>מה אפשר לומר לחנות?</translation>
    </message>
    <message>
        <source>Where you want to go, in your own words: “show me running shoes”, “open my cart”, “what size am I”.</source>
        <translation>לאן רוצים להגיע, במילים שלכם: „תראה לי נעלי ריצה“, „פתח את העגלה“, „איזו מידה מתאימה לי“.</translation>
    </message>
    <message>
        <source>How do I pay with a gift card?</source>
        <translation>איך משלמים בכרטיס מתנה?</translation>
    </message>
    <message>
        <source>You need not do anything: your gift cards are used up first.</source>
        <translation>אין צורך לעשות דבר: כרטיסי המתנה שלך מנוצלים ראשונים.</translation>
    </message>
    <message>
        <source>unfolded</source>
        <translation>פתוח</translation>
    </message>
    <message>
        <source>folded</source>
        <translation>סגור</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>צ&apos;אט</translation>
    </message>
    <message>
        <source>Call us</source>
        <translation>התקשרו אלינו</translation>
    </message>
</context>
<context>
    <name>HomeScreen</name>
    <message>
        <source>Good morning, Noa</source>
        <translation>בוקר טוב, נועה</translation>
    </message>
    <message>
        <source>Good morning</source>
        <translation>בוקר טוב</translation>
    </message>
    <message>
        <source>What would you like to find today?</source>
        <translation>מה תרצי למצוא היום?</translation>
    </message>
    <message>
        <source>Spring promotion</source>
        <translation>מבצע אביב</translation>
    </message>
    <message>
        <source>Up to 25% off the new season</source>
        <translation>עד 25% הנחה על העונה החדשה</translation>
    </message>
    <message>
        <source>See what is new</source>
        <translation>מה חדש</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>קטגוריות</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>הזמנות</translation>
    </message>
    <message>
        <source>Wish list</source>
        <translation>רשימת משאלות</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>פרופיל</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>עזרה</translation>
    </message>
    <message>
        <source>Popular now</source>
        <translation>פופולרי עכשיו</translation>
    </message>
    <message>
        <source>See all</source>
        <translation>לראות הכול</translation>
    </message>
</context>
<context>
    <name>HoursScreen</name>
    <message>
        <source>Open now</source>
        <translation>פתוח עכשיו</translation>
    </message>
    <message>
        <source>Meadow Harbour, until 20:00</source>
        <translation>מדו הנמל, עד 20:00</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>ראשון</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>שני</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>שלישי</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>רביעי</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>חמישי</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>שישי</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>שבת</translation>
    </message>
    <message>
        <source>Closed</source>
        <translation>סגור</translation>
    </message>
</context>
<context>
    <name>MapScreen</name>
    <message>
        <source>Meadow Harbour</source>
        <translation>מדו הנמל</translation>
    </message>
    <message>
        <source>4 Quay Road, open until 20:00</source>
        <translation>דרך הרציף 4, פתוח עד 20:00</translation>
    </message>
    <message>
        <source>Meadow Market</source>
        <translation>מדו השוק</translation>
    </message>
    <message>
        <source>21 Market Square, open until 19:00</source>
        <translation>כיכר השוק 21, פתוח עד 19:00</translation>
    </message>
    <message>
        <source>Meadow Hill</source>
        <translation>מדו הגבעה</translation>
    </message>
    <message>
        <source>8 Upper Street, open until 18:00</source>
        <translation>הרחוב העליון 8, פתוח עד 18:00</translation>
    </message>
    <message>
        <source>%1&#xa0;km</source>
        <translation>%1&#xa0;ק״מ</translation>
    </message>
</context>
<context>
    <name>OrdersScreen</name>
    <message>
        <source>Track</source>
        <translation>מעקב</translation>
    </message>
    <message>
        <source>Order again</source>
        <translation>להזמין שוב</translation>
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
        <translation>%1, %2, %3, לפני כן %4</translation>
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
        <translation>התנתקת מהחשבון</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>הזמנות</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>כתובות</translation>
    </message>
    <message>
        <source>Payment methods</source>
        <translation>אמצעי תשלום</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>כרטיסי מתנה</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>התראות</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>הגדרות</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>התנתקות</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>התחברות</translation>
    </message>
</context>
<context>
    <name>ReorderScreen</name>
    <message>
        <source>The same as last time?</source>
        <translation>אותו הדבר כמו בפעם הקודמת?</translation>
    </message>
    <message>
        <source>Put all into the cart</source>
        <translation>להכניס הכול לעגלה</translation>
    </message>
</context>
<context>
    <name>ResultsScreen</name>
    <message>
        <source>Popular</source>
        <translation>פופולרי</translation>
    </message>
    <message>
        <source>Newest</source>
        <translation>הכי חדש</translation>
    </message>
</context>
<context>
    <name>ReviewsScreen</name>
    <message>
        <source>2 days ago</source>
        <translation>לפני יומיים</translation>
    </message>
    <message>
        <source>Wore it the whole weekend and forgot that it was new. Exactly as pictured.</source>
        <translation>לבשתי סוף שבוע שלם ושכחתי שזה חדש. בדיוק כמו בתמונה.</translation>
    </message>
    <message>
        <source>Last week</source>
        <translation>בשבוע שעבר</translation>
    </message>
    <message>
        <source>Well made. Runs a little small: take half a size more.</source>
        <translation>עשוי היטב. קצת קטן: כדאי לקחת חצי מידה יותר.</translation>
    </message>
    <message>
        <source>In April</source>
        <translation>באפריל</translation>
    </message>
    <message>
        <source>The second one I buy. The first has survived two winters.</source>
        <translation>השני שאני קונה. הראשון שרד שני חורפים.</translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation>%1 מתוך 5</translation>
    </message>
    <message numerus="yes">
        <source>%n reviews</source>
        <translation>
            <numerusform>ביקורת אחת</numerusform>
            <numerusform>%n ביקורות</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RowsScreen</name>
    <message>
        <source>You have 30 days to change your mind. Pack it up and bring it to any of our stores.</source>
        <translation>יש לך 30 יום להתחרט. אפשר לארוז ולהביא לכל אחת מהחנויות שלנו.</translation>
    </message>
    <message>
        <source>Rain jacket</source>
        <translation>מעיל גשם</translation>
    </message>
    <message>
        <source>Order %1, until 1 June</source>
        <translation>הזמנה %1, עד 1 ביוני</translation>
    </message>
    <message>
        <source>Wooden trains</source>
        <translation>רכבות עץ</translation>
    </message>
    <message>
        <source>Order %1, until 11 May</source>
        <translation>הזמנה %1, עד 11 במאי</translation>
    </message>
    <message>
        <source>Our stores</source>
        <translation>החנויות שלנו</translation>
    </message>
    <message>
        <source>Used up first when you pay.</source>
        <translation>מנוצלים ראשונים בתשלום.</translation>
    </message>
    <message>
        <source>From Mira</source>
        <translation>ממירה</translation>
    </message>
    <message>
        <source>Valid until December</source>
        <translation>בתוקף עד דצמבר</translation>
    </message>
    <message>
        <source>Birthday card</source>
        <translation>כרטיס יום הולדת</translation>
    </message>
    <message>
        <source>Valid until March</source>
        <translation>בתוקף עד מרץ</translation>
    </message>
    <message>
        <source>Where we deliver to.</source>
        <translation>לאן אנחנו שולחים.</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>בית</translation>
    </message>
    <message>
        <source>12 Linden Street, Haifa</source>
        <translation>רחוב הליבנה 12, חיפה</translation>
    </message>
    <message>
        <source>Work</source>
        <translation>עבודה</translation>
    </message>
    <message>
        <source>3 Harbour Road, Haifa</source>
        <translation>דרך הנמל 3, חיפה</translation>
    </message>
    <message>
        <source>How you pay.</source>
        <translation>איך משלמים.</translation>
    </message>
    <message>
        <source>Card ending in 4417</source>
        <translation>כרטיס שמסתיים ב-4417</translation>
    </message>
    <message>
        <source>Expires 08/28, used first</source>
        <translation>בתוקף עד 08/28, בשימוש ראשון</translation>
    </message>
    <message>
        <source>Card ending in 9020</source>
        <translation>כרטיס שמסתיים ב-9020</translation>
    </message>
    <message>
        <source>Expires 01/27</source>
        <translation>בתוקף עד 01/27</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>כרטיסי מתנה</translation>
    </message>
    <message>
        <source>Two are new.</source>
        <translation>שתיים חדשות.</translation>
    </message>
    <message>
        <source>Your parcel is on its way</source>
        <translation>החבילה שלך בדרך</translation>
    </message>
    <message>
        <source>Order %1, today</source>
        <translation>הזמנה %1, היום</translation>
    </message>
    <message>
        <source>Price drop on your wish list</source>
        <translation>ירידת מחיר ברשימת המשאלות</translation>
    </message>
    <message>
        <source>Canvas backpack, yesterday</source>
        <translation>תרמיל בד, אתמול</translation>
    </message>
    <message>
        <source>How is the rain jacket?</source>
        <translation>איך מעיל הגשם?</translation>
    </message>
    <message>
        <source>See what others say</source>
        <translation>מה אחרים אומרים</translation>
    </message>
    <message>
        <source>What we keep, and what we do not.</source>
        <translation>מה אנחנו שומרים, ומה לא.</translation>
    </message>
    <message>
        <source>Commands stay on this phone</source>
        <translation>הפקודות נשארות בטלפון</translation>
    </message>
    <message>
        <source>What you say is understood here; no recording is kept.</source>
        <translation>מה שנאמר מובן כאן; שום הקלטה לא נשמרת.</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>הודעות</translation>
    </message>
    <message>
        <source>Only about your orders.</source>
        <translation>רק על ההזמנות שלך.</translation>
    </message>
    <message>
        <source>Your data</source>
        <translation>המידע שלך</translation>
    </message>
    <message>
        <source>Orders are kept for seven years, as the law asks.</source>
        <translation>הזמנות נשמרות שבע שנים, כדרישת החוק.</translation>
    </message>
    <message>
        <source>We are there from 8 to 20 o&apos;clock.</source>
        <translation>אנחנו כאן מ-8 עד 20.</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>להתקשר</translation>
    </message>
    <message>
        <source>Live chat</source>
        <translation>צ&apos;אט חי</translation>
    </message>
    <message>
        <source>Answers within a minute</source>
        <translation>מענה תוך דקה</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>לכתוב</translation>
    </message>
</context>
<context>
    <name>SavingTag</name>
    <message>
        <source>−%1%</source>
        <translation>−%1%</translation>
    </message>
</context>
<context>
    <name>Screens</name>
    <message>
        <source>Search</source>
        <translation>חיפוש</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>קטגוריות</translation>
    </message>
    <message>
        <source>Products</source>
        <translation>מוצרים</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>מוצר</translation>
    </message>
    <message>
        <source>Reviews</source>
        <translation>ביקורות</translation>
    </message>
    <message>
        <source>Your cart</source>
        <translation>העגלה שלך</translation>
    </message>
    <message>
        <source>Checkout</source>
        <translation>קופה</translation>
    </message>
    <message>
        <source>Orders</source>
        <translation>הזמנות</translation>
    </message>
    <message>
        <source>Track order</source>
        <translation>מעקב הזמנה</translation>
    </message>
    <message>
        <source>Order again</source>
        <translation>להזמין שוב</translation>
    </message>
    <message>
        <source>Wish list</source>
        <translation>רשימת משאלות</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>פרופיל</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>הגדרות</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>עזרה</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>צ&apos;אט</translation>
    </message>
    <message>
        <source>Our stores</source>
        <translation>החנויות שלנו</translation>
    </message>
    <message>
        <source>Opening hours</source>
        <translation>שעות פתיחה</translation>
    </message>
    <message>
        <source>Returns</source>
        <translation>החזרות</translation>
    </message>
    <message>
        <source>Gift cards</source>
        <translation>כרטיסי מתנה</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>כתובות</translation>
    </message>
    <message>
        <source>Payment methods</source>
        <translation>אמצעי תשלום</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>התראות</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>פרטיות</translation>
    </message>
    <message>
        <source>Contact us</source>
        <translation>יצירת קשר</translation>
    </message>
    <message>
        <source>Size guide</source>
        <translation>טבלת מידות</translation>
    </message>
    <message>
        <source>Spring promotion</source>
        <translation>מבצע אביב</translation>
    </message>
    <message>
        <source>Bar code</source>
        <translation>ברקוד</translation>
    </message>
    <message>
        <source>Sign out</source>
        <translation>התנתקות</translation>
    </message>
</context>
<context>
    <name>SearchScreen</name>
    <message>
        <source>Search products</source>
        <translation>חיפוש מוצרים</translation>
    </message>
    <message>
        <source>shoe</source>
        <translation>נעל</translation>
    </message>
    <message>
        <source>coat</source>
        <translation>מעיל</translation>
    </message>
    <message>
        <source>shirt</source>
        <translation>חולצה</translation>
    </message>
    <message>
        <source>mug</source>
        <translation>ספל</translation>
    </message>
    <message>
        <source>train</source>
        <translation>רכבת</translation>
    </message>
    <message>
        <source>You looked at</source>
        <translation>צפית לאחרונה</translation>
    </message>
    <message numerus="yes">
        <source>%n found</source>
        <translation>
            <numerusform>נמצאו %n</numerusform>
            <numerusform>נמצאו %n</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SeasonalSheet</name>
    <message>
        <source>Spring is here</source>
        <translation>האביב כאן</translation>
    </message>
    <message>
        <source>Up to 25% off shoes, dresses and bags. Until the end of May, in all stores and here.</source>
        <translation>עד 25% הנחה על נעליים, שמלות ותיקים. עד סוף מאי, בכל החנויות וכאן.</translation>
    </message>
    <message>
        <source>See all deals</source>
        <translation>כל המבצעים</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>אחר כך</translation>
    </message>
</context>
<context>
    <name>SettingsScreen</name>
    <message>
        <source>Sound and look</source>
        <translation>צליל ומראה</translation>
    </message>
    <message>
        <source>Spoken replies</source>
        <translation>תשובות קוליות</translation>
    </message>
    <message>
        <source>Answers are read aloud</source>
        <translation>התשובות מוקראות בקול</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>כהה</translation>
    </message>
    <message>
        <source>Large text</source>
        <translation>טקסט גדול</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>שפה</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>נבחרה</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>התראות</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>פרטיות</translation>
    </message>
</context>
<context>
    <name>Stars</name>
    <message>
        <source>%1 of 5 stars</source>
        <translation>%1 מתוך 5 כוכבים</translation>
    </message>
</context>
<context>
    <name>Stock</name>
    <message>
        <source>Trail running shoe</source>
        <translation>נעל ריצת שטח</translation>
    </message>
    <message>
        <source>Grips wet rock and soft ground. A rock plate under the ball of the foot, 6&#xa0;mm drop, laces that stay tied.</source>
        <translation>אוחזת בסלע רטוב ובאדמה רכה. לוח הגנה מתחת לכרית הרגל, 6 מ&quot;מ, שרוכים שנשארים קשורים.</translation>
    </message>
    <message>
        <source>City sneaker</source>
        <translation>סניקרס עירוני</translation>
    </message>
    <message>
        <source>Canvas and leather on a sole that walks all day. Wipes clean.</source>
        <translation>בד ועור על סוליה להליכה כל היום. מתנקה בניגוב.</translation>
    </message>
    <message>
        <source>Rain jacket</source>
        <translation>מעיל גשם</translation>
    </message>
    <message>
        <source>Keeps a day of rain out and packs into its own pocket. Taped seams, a hood that turns with you.</source>
        <translation>מגן מיום גשם שלם ומתקפל לכיסו. תפרים אטומים וכובע שמסתובב איתך.</translation>
    </message>
    <message>
        <source>Canvas backpack</source>
        <translation>תרמיל בד</translation>
    </message>
    <message>
        <source>Waxed canvas, 18 litres, a sleeve for the laptop and one for the bottle.</source>
        <translation>בד משועווה, 18 ליטר, תא למחשב ותא לבקבוק.</translation>
    </message>
    <message>
        <source>Linen shirt</source>
        <translation>חולצת פשתן</translation>
    </message>
    <message>
        <source>Washed linen that is soft from the first day.</source>
        <translation>פשתן שטוף, רך מהיום הראשון.</translation>
    </message>
    <message>
        <source>Summer dress</source>
        <translation>שמלת קיץ</translation>
    </message>
    <message>
        <source>Light cotton with pockets. Falls just below the knee.</source>
        <translation>כותנה קלה עם כיסים. מגיעה מעט מתחת לברך.</translation>
    </message>
    <message>
        <source>Winter coat</source>
        <translation>מעיל חורף</translation>
    </message>
    <message>
        <source>Recycled wool with a warm lining, down to minus ten.</source>
        <translation>צמר ממוחזר עם בטנה חמה, עד מינוס עשר.</translation>
    </message>
    <message>
        <source>Wooden train</source>
        <translation>רכבת עץ</translation>
    </message>
    <message>
        <source>Beech wood and water-based paint. From three years.</source>
        <translation>עץ אשור וצבע על בסיס מים. מגיל שלוש.</translation>
    </message>
    <message>
        <source>Stoneware mug</source>
        <translation>ספל קרמיקה</translation>
    </message>
    <message>
        <source>Thrown by hand, holds 350&#xa0;ml, goes into the dishwasher.</source>
        <translation>עבודת יד, 350 מ&quot;ל, מתאים למדיח.</translation>
    </message>
    <message>
        <source>Shoes</source>
        <translation>נעליים</translation>
    </message>
    <message>
        <source>Coats</source>
        <translation>מעילים</translation>
    </message>
    <message>
        <source>Shirts</source>
        <translation>חולצות</translation>
    </message>
    <message>
        <source>Dresses</source>
        <translation>שמלות</translation>
    </message>
    <message>
        <source>Bags</source>
        <translation>תיקים</translation>
    </message>
    <message>
        <source>Toys</source>
        <translation>צעצועים</translation>
    </message>
    <message>
        <source>Kitchen</source>
        <translation>מטבח</translation>
    </message>
    <message>
        <source>Arrives Thursday</source>
        <translation>מגיע ביום חמישי</translation>
    </message>
    <message>
        <source>On its way</source>
        <translation>בדרך</translation>
    </message>
    <message>
        <source>Trail running shoe and a mug</source>
        <translation>נעל ריצת שטח וספל</translation>
    </message>
    <message>
        <source>Delivered 2 May</source>
        <translation>נמסר ב-2 במאי</translation>
    </message>
    <message>
        <source>Delivered</source>
        <translation>נמסר</translation>
    </message>
    <message>
        <source>Delivered 11 April</source>
        <translation>נמסר ב-11 באפריל</translation>
    </message>
    <message>
        <source>2 wooden trains</source>
        <translation>2 רכבות עץ</translation>
    </message>
    <message>
        <source>Deals</source>
        <translation>מבצעים</translation>
    </message>
    <message>
        <source>New arrivals</source>
        <translation>מוצרים חדשים</translation>
    </message>
    <message>
        <source>All products</source>
        <translation>כל המוצרים</translation>
    </message>
    <message>
        <source>en_US</source>
        <comment>the locale that numbers are written by</comment>
        <translation>he_IL</translation>
    </message>
    <message>
        <source>€%1</source>
        <comment>a price</comment>
        <translation>€%1</translation>
    </message>
</context>
<context>
    <name>Sum</name>
    <message>
        <source>Products</source>
        <translation>מוצרים</translation>
    </message>
    <message>
        <source>Delivery</source>
        <translation>משלוח</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>חינם</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>סך הכול</translation>
    </message>
</context>
<context>
    <name>TopBar</name>
    <message>
        <source>Back</source>
        <translation>חזרה</translation>
    </message>
    <message>
        <source>Read answers aloud</source>
        <translation>להקריא תשובות</translation>
    </message>
    <message>
        <source>Mute answers</source>
        <translation>להשתיק תשובות</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>חיפוש</translation>
    </message>
    <message numerus="yes">
        <source>Cart, %n pieces</source>
        <translation>
            <numerusform>עגלה, פריט אחד</numerusform>
            <numerusform>עגלה, %n פריטים</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrackingScreen</name>
    <message>
        <source>Ordered</source>
        <translation>הוזמן</translation>
    </message>
    <message>
        <source>Monday, 18:20</source>
        <translation>יום שני, 18:20</translation>
    </message>
    <message>
        <source>Packed</source>
        <translation>נארז</translation>
    </message>
    <message>
        <source>Tuesday, 9:05</source>
        <translation>יום שלישי, 9:05</translation>
    </message>
    <message>
        <source>On its way</source>
        <translation>בדרך</translation>
    </message>
    <message>
        <source>Left the depot in Haifa at 7:40</source>
        <translation>יצא מהמחסן בחיפה ב-7:40</translation>
    </message>
    <message>
        <source>Delivered</source>
        <translation>נמסר</translation>
    </message>
    <message>
        <source>Expected on Thursday</source>
        <translation>צפוי ביום חמישי</translation>
    </message>
    <message>
        <source>Order %1</source>
        <translation>הזמנה %1</translation>
    </message>
    <message>
        <source>Arrives Thursday</source>
        <translation>מגיע ביום חמישי</translation>
    </message>
    <message>
        <source>between 14:00 and 16:00</source>
        <translation>בין 14:00 ל-16:00</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>done</source>
        <translation>בוצע</translation>
    </message>
    <message>
        <source>to come</source>
        <translation>עוד לא</translation>
    </message>
    <message>
        <source>Ask about this order</source>
        <translation>לשאול על ההזמנה</translation>
    </message>
</context>
<context>
    <name>WishesScreen</name>
    <message>
        <source>No wishes yet</source>
        <translation>אין עדיין משאלות</translation>
    </message>
    <message>
        <source>Tap the heart of a product to keep it here.</source>
        <translation>הקישו על הלב של מוצר כדי לשמור אותו כאן.</translation>
    </message>
</context>
</TS>
