pragma Singleton
import QtQuick

/// Brings what the keyboard reaches into sight.
QtObject {
    function show(item: Item) {
        for (let at = item.parent; at; at = at.parent) {
            const view = at as Flickable
            if (!view)
                continue
            const top = item.mapToItem(view.contentItem, 0, 0).y
            const low = view.originY, high = Math.max(low, view.originY + view.contentHeight - view.height)
            let y = view.contentY
            if (top + item.height + 12 > y + view.height)
                y = top + item.height + 12 - view.height
            if (top - 12 < y)
                y = top - 12
            view.contentY = Math.max(low, Math.min(high, y))
        }
    }
}
