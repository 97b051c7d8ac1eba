pragma Singleton
import QtQuick

/// What the shop sells.
QtObject {
    readonly property var products: [
        product("trail-running-shoe", "Trail running shoe", "Fernway", 89, "shoes", "shoe", 0.05, 4.7, 214, 119, "Grips wet rock and soft ground. A rock plate under the ball of the foot, 6 mm drop, laces that stay tied."),
        product("city-sneaker", "City sneaker", "Harbour & Pine", 74, "shoes", "sneaker", 0.55, 4.5, 156, 0, "Canvas and leather on a sole that walks all day. Wipes clean."),
        product("rain-jacket", "Rain jacket", "Northfold", 129, "coats", "jacket", 0.12, 4.8, 342, 0, "Keeps a day of rain out and packs into its own pocket. Taped seams, a hood that turns with you."),
        product("canvas-backpack", "Canvas backpack", "Loden", 68, "bags", "backpack", 0.36, 4.6, 98, 85, "Waxed canvas, 18 litres, a sleeve for the laptop and one for the bottle."),
        product("linen-shirt", "Linen shirt", "Harbour & Pine", 49, "shirts", "shirt", 0.59, 4.4, 87, 0, "Washed linen that is soft from the first day."),
        product("summer-dress", "Summer dress", "Maribel", 79, "dresses", "dress", 0.94, 4.9, 203, 99, "Light cotton with pockets. Falls just below the knee."),
        product("winter-coat", "Winter coat", "Northfold", 189, "coats", "coat", 0.08, 4.7, 121, 249, "Recycled wool with a warm lining, down to minus ten."),
        product("wooden-train", "Wooden train", "Spruce", 32, "toys", "train", 0.09, 4.9, 310, 0, "Beech wood and water-based paint. From three years."),
        product("coffee-mug", "Stoneware mug", "Kiln", 18, "kitchen", "mug", 0.54, 4.6, 64, 0, "Thrown by hand, holds 350 ml, goes into the dishwasher.")
    ]
    readonly property var categories: [
        { id: "shoes", title: "Shoes", art: "sneaker", hue: 0.55 },
        { id: "coats", title: "Coats", art: "jacket", hue: 0.12 },
        { id: "shirts", title: "Shirts", art: "shirt", hue: 0.59 },
        { id: "dresses", title: "Dresses", art: "dress", hue: 0.94 },
        { id: "bags", title: "Bags", art: "backpack", hue: 0.36 },
        { id: "toys", title: "Toys", art: "train", hue: 0.09 },
        { id: "kitchen", title: "Kitchen", art: "mug", hue: 0.54 }
    ]
    readonly property var orders: [
        { id: "M-2041", when: "Arrives Thursday", state: "On its way", art: "shoe", hue: 0.05, total: 107, items: "Trail running shoe and a mug" },
        { id: "M-1987", when: "Delivered 2 May", state: "Delivered", art: "jacket", hue: 0.12, total: 129, items: "Rain jacket" },
        { id: "M-1902", when: "Delivered 11 April", state: "Delivered", art: "train", hue: 0.09, total: 64, items: "2 wooden trains" }
    ]

    function product(id: string, name: string, brand: string, price: int, category: string, art: string, hue: real, rating: real, reviews: int, before: int, about: string) : var {
        return { id, name, brand, price, category, art, hue, rating, reviews, before, about }
    }

    function find(id: string) : var {
        return products.find(product => product.id === id) ?? products[0]
    }

    /// The products that the parameters of a navigation ask for.
    function matching(params: var) : var {
        let found = products.filter(product => (!params.category || product.category === params.category)
            && (params.filter !== "on_sale" || product.before > 0))
        if (params.sort === "newest") found = found.slice().reverse()
        return found
    }

    function search(text: string) : var {
        const words = text.toLowerCase().split(" ").filter(word => word.length > 0)
        return products.filter(product => words.every(word =>
            (product.name + " " + product.brand + " " + product.category).toLowerCase().includes(word)))
    }

    function titleFor(params: var) : string {
        const category = categories.find(one => one.id === params.category)
        if (category) return category.title
        if (params.filter === "on_sale") return qsTr("Deals")
        if (params.sort === "newest") return qsTr("New arrivals")
        return qsTr("Products")
    }

    function money(amount: real) : string {
        return "€" + (Number.isInteger(amount) ? amount : amount.toFixed(2))
    }
}
