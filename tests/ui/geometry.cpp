#include <tests/ui/geometry.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QFontMetricsF>
#include <QtTest/QTest>
#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace zelvora {
namespace {

constexpr double kSlack = 1.5;  ///< Rounding of text sizes, in points.
constexpr int kSmallest = 10;   ///< The smallest letters that can be read, in points.
const QRegularExpression kBetweenWords(QStringLiteral("[\\s\u00AD-]+"));
const QRegularExpression kLooseUnit(
    QStringLiteral("\\d (?:[%\u20AC]|(?:cm|km|ml|mm|\u05E1\u05F4\u05DE|\u05E7\u05F4\u05DE)\\b)"));

bool is(const QQuickItem& item, const char* type) { return item.inherits(type); }

QRectF placeOf(const QQuickItem& item, const QRectF& part) { return item.mapRectToScene(part); }

std::string nameOf(const QQuickItem& item) {
  const QVariant text = item.property("text");
  const QString words = text.isValid() ? text.toString() : item.objectName();
  return std::string(item.metaObject()->className()) + " \"" + words.left(40).toStdString() + "\"";
}

/// Visits each item that is shown.
void eachShown(const QQuickItem& item, const std::function<void(const QQuickItem&)>& visit) {
  if (!item.isVisible() || item.opacity() < 0.05) return;
  visit(item);
  for (const QQuickItem* child : item.childItems()) eachShown(*child, visit);
}

const QQuickItem* flickableAround(const QQuickItem& item) {
  for (const QQuickItem* at = item.parentItem(); at; at = at->parentItem())
    if (is(*at, "QQuickFlickable")) return at;
  return nullptr;
}

/// What a text paints, not the item around it.
QRectF paintedBy(const QQuickItem& text) {
  const double width = text.property("contentWidth").toDouble();
  const double height = text.property("contentHeight").toDouble();
  return {0, 0, std::min(width, std::max(width, text.width())), height};
}

bool isText(const QQuickItem& item) {
  return is(item, "QQuickText") && !item.property("text").toString().isEmpty();
}

bool isControl(const QQuickItem& item) {
  return is(item, "QQuickAbstractButton") || is(item, "QQuickTextInput");
}

/// The part of the page that can be used: the sheet, when one is open.
const QQuickItem& usablePart(const QQuickWindow& window) {
  for (const QQuickItem* child : window.contentItem()->childItems())
    if (is(*child, "QQuickOverlay"))
      for (const QQuickItem* popup : child->childItems())
        if (is(*popup, "QQuickPopupItem") && popup->isVisible()) return *child;
  return *window.contentItem();
}

/// A word wider than its place is broken across lines, unless the text shrinks.
void findBrokenWord(const QQuickItem& text, std::vector<std::string>& faults) {
  const auto font = text.property("font").value<QFont>();
  const bool shrinks = text.property("fontSizeMode").toInt() != 0;
  const int size = shrinks ? text.property("minimumPixelSize").toInt() : font.pixelSize();
  if (size < kSmallest) faults.push_back("too small to read: " + nameOf(text));
  if (shrinks || text.property("lineCount").toInt() <= 1) return;
  for (const QString& word : text.property("text").toString().split(kBetweenWords))
    if (QFontMetricsF(font).horizontalAdvance(word) > text.width() + kSlack)
      faults.push_back("within a word: " + nameOf(text));
}

void findCutTexts(const QQuickWindow& window, std::vector<std::string>& faults) {
  const QRectF all(0, 0, window.width(), window.height());
  eachShown(usablePart(window), [&](const QQuickItem& item) {
    if (!isText(item)) return;
    findBrokenWord(item, faults);
    if (item.property("text").toString().contains(kLooseUnit))
      faults.push_back("a unit that may part from its number: " + nameOf(item));
    if (item.property("truncated").toBool()) faults.push_back("elided: " + nameOf(item));
    const QRectF painted = paintedBy(item);
    const bool isSingle = item.property("lineCount").toInt() <= 1;
    if (isSingle && painted.width() > item.width() + kSlack && item.width() > 0 &&
        item.property("horizontalAlignment").toInt() != Qt::AlignHCenter)
      faults.push_back("wider than its place: " + nameOf(item));
    if (painted.height() > item.height() + kSlack)
      faults.push_back("higher than its place: " + nameOf(item));
    const QRectF place = placeOf(item, QRectF(0, 0, item.width(), item.height()));
    const bool scrolls = flickableAround(item) != nullptr;
    if (place.left() < -kSlack || place.right() > all.width() + kSlack)
      faults.push_back("beside the window: " + nameOf(item));
    if (!scrolls && (place.top() < -kSlack || place.bottom() > all.height() + kSlack))
      faults.push_back("above or below the window: " + nameOf(item));
    for (const QQuickItem* at = item.parentItem(); at; at = at->parentItem()) {
      if (!at->clip() || is(*at, "QQuickFlickable")) continue;
      if (!placeOf(*at, QRectF(0, 0, at->width(), at->height()))
               .adjusted(-kSlack, -kSlack, kSlack, kSlack)
               .contains(place) &&
          !scrolls)
        faults.push_back("clipped: " + nameOf(item));
    }
  });
}

void findOverlaps(const QQuickWindow& window, std::vector<std::string>& faults) {
  struct Shown {
    const QQuickItem* item;
    QRectF place;
    const QQuickItem* scrolls;
  };
  std::vector<Shown> texts;
  eachShown(usablePart(window), [&](const QQuickItem& item) {
    if (!isText(item)) return;
    QRectF place = placeOf(item, paintedBy(item).adjusted(2, 2, -2, -2));
    const QQuickItem* around = flickableAround(item);
    if (around) {
      place &= placeOf(*around, QRectF(0, 0, around->width(), around->height()));
      if (place.height() < 4) return;
    }
    texts.push_back({&item, place, around});
  });
  for (std::size_t i = 0; i < texts.size(); ++i)
    for (std::size_t j = i + 1; j < texts.size(); ++j) {
      const QRectF common = texts[i].place & texts[j].place;
      if (common.width() > 3 && common.height() > 3)
        faults.push_back("on one another: " + nameOf(*texts[i].item) + " and " +
                         nameOf(*texts[j].item));
    }
}

void findSmallControls(const QQuickWindow& window, std::vector<std::string>& faults) {
  eachShown(usablePart(window), [&](const QQuickItem& item) {
    if (!is(item, "QQuickAbstractButton") || !item.isEnabled()) return;
    const bool reachesOut = item.containmentMask() != nullptr;
    if (!reachesOut && (item.width() < 43.5 || item.height() < 43.5))
      faults.push_back("too small for a finger: " + nameOf(item));
  });
}

const char* roleName(QAccessible::Role role) {
  switch (role) {
    case QAccessible::Button: return "button";
    case QAccessible::CheckBox: return "switch";
    case QAccessible::RadioButton: return "choice";
    case QAccessible::EditableText: return "field";
    case QAccessible::Heading: return "heading";
    case QAccessible::StaticText: return "text";
    case QAccessible::AlertMessage: return "alert";
    case QAccessible::Dialog: return "dialog";
    case QAccessible::List: return "list";
    case QAccessible::ListItem: return "item";
    case QAccessible::Link: return "link";
    case QAccessible::Graphic: return "picture";
    default: return "other";
  }
}

void read(QAccessibleInterface& face, std::vector<std::string>& lines) {
  const QString name = face.text(QAccessible::Name);
  if (face.state().invisible) return;
  if (!name.isEmpty() && face.object() && qobject_cast<QQuickItem*>(face.object())) {
    std::string line = std::string(roleName(face.role())) + ": " + name.toStdString();
    if (face.state().checkable) line += face.state().checked ? ", on" : ", off";
    if (face.state().disabled) line += ", unavailable";
    lines.push_back(std::move(line));
  }
  for (int child = 0; child < face.childCount(); ++child)
    if (QAccessibleInterface* below = face.child(child)) read(*below, lines);
}

}  // namespace

std::string spokenItem(QQuickItem* item) {
  QAccessible::setActive(true);  // a screen reader is switched on
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
  if (!face) return "nothing";
  return std::string(roleName(face->role())) + ": " + face->text(QAccessible::Name).toStdString();
}

std::vector<std::string> layoutFaults(const QQuickWindow& window) {
  std::vector<std::string> faults;
  findCutTexts(window, faults);
  findOverlaps(window, faults);
  findSmallControls(window, faults);
  return faults;
}

std::vector<std::string> reachFaults(QQuickWindow& window) {
  QAccessible::setActive(true);  // a screen reader is switched on
  std::vector<std::string> faults;
  std::map<const QQuickItem*, QPointer<const QQuickItem>> wanted;  // null once it is gone
  eachShown(usablePart(window), [&](const QQuickItem& item) {
    if (isControl(item) && item.isEnabled() && item.activeFocusOnTab())
      wanted.emplace(&item, &item);
    if (!isControl(item) || !item.isEnabled()) return;
    QAccessibleInterface* face =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(&item));
    if (!face || face->text(QAccessible::Name).isEmpty())
      faults.push_back("no name: " + nameOf(item));
    if (!item.activeFocusOnTab()) faults.push_back("not reached by Tab: " + nameOf(item));
  });
  std::set<const QQuickItem*> reached;
  for (std::size_t press = 0; press < wanted.size() + 12; ++press) {
    QTest::keyClick(&window, Qt::Key_Tab);
    QCoreApplication::processEvents();
    const QQuickItem* focus = window.activeFocusItem();
    if (!focus) continue;
    if (!reached.insert(focus).second) continue;
    const auto whole = [&] {
      return placeOf(*focus, QRectF(0, 0, focus->width(), focus->height()));
    };
    const QRectF all(0, 0, window.width(), window.height());
    if (!all.contains(whole())) (void)window.grabWindow();  // lays out what is new
    if (window.activeFocusItem() != focus) continue;        // it had the focus, and lost it
    const QRectF place = whole();
    const QRectF seen = place & all;
    // A control taller than the window can't be seen whole.
    if (isControl(*focus) &&
        seen.height() + 1 < std::min<double>(place.height(), window.height() / 2.0))
      faults.push_back("focus out of sight: " + nameOf(*focus));
    if (isControl(*focus) && !wanted.contains(focus)) {
      bool appeared = false;
      eachShown(usablePart(window), [&](const QQuickItem& item) { appeared |= &item == focus; });
      if (!appeared) faults.push_back("focus behind what is open: " + nameOf(*focus));
    }
  }
  eachShown(usablePart(window), [&](const QQuickItem& item) {
    // An item that appeared since may have the address of a wanted one that is gone.
    if (wanted.contains(&item) && wanted.at(&item) && !reached.contains(&item))
      faults.push_back("not reached by Tab: " + nameOf(item));
  });
  return faults;
}

std::vector<std::string> spokenPage(QQuickWindow& window) {
  QAccessible::setActive(true);  // a screen reader is switched on
  std::vector<std::string> lines;
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&window);
  for (int child = 0; face && child < face->childCount(); ++child)
    if (QAccessibleInterface* below = face->child(child)) read(*below, lines);
  return lines;
}

}  // namespace zelvora
