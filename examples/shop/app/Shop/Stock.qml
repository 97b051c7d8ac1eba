pragma Singleton
import QtQuick

/// What the shop sells.
QtObject {
    readonly property var products: [
        product("trail-running-shoe", qsTr("Trail running shoe"), "Fernway", 89, "shoes", "shoe", 0.05, 4.7, 214, 119, qsTr("Grips wet rock and soft ground. A rock plate under the ball of the foot, 6\u00A0mm drop, laces that stay tied.")),
        product("city-sneaker", qsTr("City sneaker"), "Harbour & Pine", 74, "shoes", "sneaker", 0.55, 4.5, 156, 0, qsTr("Canvas and leather on a sole that walks all day. Wipes clean.")),
        product("rain-jacket", qsTr("Rain jacket"), "Northfold", 129, "coats", "jacket", 0.12, 4.8, 342, 0, qsTr("Keeps a day of rain out and packs into its own pocket. Taped seams, a hood that turns with you.")),
        product("canvas-backpack", qsTr("Canvas backpack"), "Loden", 68, "bags", "backpack", 0.36, 4.6, 98, 85, qsTr("Waxed canvas, 18 litres, a sleeve for the laptop and one for the bottle.")),
        product("linen-shirt", qsTr("Linen shirt"), "Harbour & Pine", 49, "shirts", "shirt", 0.59, 4.4, 87, 0, qsTr("Washed linen that is soft from the first day.")),
        product("summer-dress", qsTr("Summer dress"), "Maribel", 79, "dresses", "dress", 0.94, 4.9, 203, 99, qsTr("Light cotton with pockets. Falls just below the knee.")),
        product("winter-coat", qsTr("Winter coat"), "Northfold", 189, "coats", "coat", 0.08, 4.7, 121, 249, qsTr("Recycled wool with a warm lining, down to minus ten.")),
        product("wooden-train", qsTr("Wooden train"), "Spruce", 32, "toys", "train", 0.09, 4.9, 310, 0, qsTr("Beech wood and water-based paint. From three years.")),
        product("coffee-mug", qsTr("Stoneware mug"), "Kiln", 18, "kitchen", "mug", 0.54, 4.6, 64, 0, qsTr("Thrown by hand, holds 350\u00A0ml, goes into the dishwasher."))
    ]
    readonly property var categories: [
        { id: "shoes", title: qsTr("Shoes"), art: "sneaker", hue: 0.55 },
        { id: "coats", title: qsTr("Coats"), art: "jacket", hue: 0.12 },
        { id: "shirts", title: qsTr("Shirts"), art: "shirt", hue: 0.59 },
        { id: "dresses", title: qsTr("Dresses"), art: "dress", hue: 0.94 },
        { id: "bags", title: qsTr("Bags"), art: "backpack", hue: 0.36 },
        { id: "toys", title: qsTr("Toys"), art: "train", hue: 0.09 },
        { id: "kitchen", title: qsTr("Kitchen"), art: "mug", hue: 0.54 }
    ]
    readonly property var orders: [
        { id: "M-2041", when: qsTr("Arrives Thursday"), underWay: true, state: qsTr("On its way"), art: "shoe", hue: 0.05, total: 107, items: qsTr("Trail running shoe and a mug") },
        { id: "M-1987", when: qsTr("Delivered 2 May"), underWay: false, state: qsTr("Delivered"), art: "jacket", hue: 0.12, total: 129, items: qsTr("Rain jacket") },
        { id: "M-1902", when: qsTr("Delivered 11 April"), underWay: false, state: qsTr("Delivered"), art: "train", hue: 0.09, total: 64, items: qsTr("2 wooden trains") }
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
        const words = (text.match(/\S+/g) ?? []).map(word => word.toLowerCase())
        const told = product => [product.name, product.brand, product.category, titleFor({ category: product.category })].join(" ")
        return products.filter(product => words.every(word => told(product).toLowerCase().includes(word)))
    }

    function titleFor(params: var) : string {
        const category = categories.find(one => one.id === params.category)
        if (category) return category.title
        if (params.filter === "on_sale") return qsTr("Deals")
        if (params.sort === "newest") return qsTr("New arrivals")
        return qsTr("All products")
    }

    /// Joins texts, to be read as one.
    function told(parts: var) : string {
        return parts.filter(words => words !== "").join(", ")
    }

    function decimal(number: real, digits: int) : string {
        return Number(number).toLocaleString(Qt.locale(qsTr("en_US", "the locale that numbers are written by")), "f", digits)
    }

    function money(amount: real) : string {
        return qsTr("€%1", "a price").arg(decimal(amount, Number.isInteger(amount) ? 0 : 2))
    }
}
