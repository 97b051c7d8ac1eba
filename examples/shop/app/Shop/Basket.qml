pragma Singleton
import QtQuick

/// What the customer has chosen: the cart, the wish list, her size, and whether she is signed in.
QtObject {
    property var lines: [{ id: "rain-jacket", count: 1 }, { id: "coffee-mug", count: 2 }]
    property var wishes: ["summer-dress", "canvas-backpack"]
    property int shoeSize: 0
    property bool signedIn: true

    readonly property int count: lines.reduce((sum, line) => sum + line.count, 0)
    readonly property real total: lines.reduce((sum, line) => sum + line.count * Stock.find(line.id).price, 0)
    readonly property real delivery: count === 0 || total >= 100 ? 0 : 4.9

    function countOf(id: string) : int {
        return lines.find(line => line.id === id)?.count ?? 0
    }

    /// Adds `change` pieces; removes a product when none is left.
    function add(id: string, change: int) {
        const known = lines.some(line => line.id === id)
        const changed = known ? lines.map(line => line.id === id ? { id, count: line.count + change } : line)
                              : [...lines, { id, count: change }]
        lines = changed.filter(line => line.count > 0)
    }

    function clear() {
        lines = []
    }

    function toggleWish(id: string) {
        wishes = wishes.includes(id) ? wishes.filter(one => one !== id) : [...wishes, id]
    }
}
