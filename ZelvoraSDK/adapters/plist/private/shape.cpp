#include <ZelvoraSDK/adapters/plist/private/shape.h>

#include <charconv>
#include <cstdint>
#include <vector>

#include <ZelvoraSDK/adapters/plist/plist_bundle.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {

namespace {

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kTrailerBytes = 32;
/// What an object costs in memory, besides its payload: roughly.
constexpr std::size_t kBytesPerObject = 64;

[[noreturn]] void failMalformed() { throw propertyListError("malformed binary list"); }

void require(bool condition) {
  if (!condition) failMalformed();
}

/// The high half of an object's first byte.
enum ObjectKind : unsigned {
  kSimple = 0x0,
  kInteger = 0x1,
  kReal = 0x2,
  kDate = 0x3,
  kData = 0x4,
  kAscii = 0x5,
  kUtf16 = 0x6,
  kUid = 0x8,
  kArray = 0xA,
  kDictionary = 0xD,
};

/// Where things are, according to the trailer.
struct Layout {
  std::size_t offsetBytes = 0;     ///< Width of an entry of the offset table.
  std::size_t referenceBytes = 0;  ///< Width of a reference to an object.
  std::size_t objectCount = 0;
  std::size_t root = 0;
  std::size_t tableStart = 0;
};

/// An object's kind and where its payload is.
struct Object {
  unsigned kind = 0;
  std::size_t start = 0;  ///< Of the payload.
  std::size_t count = 0;  ///< Bytes, characters, elements or pairs, by kind.
};

class ObjectWalk {
 public:
  explicit ObjectWalk(std::string_view list) : list_(list), layout_(readLayout()) {}

  void run() {
    require(objectAt(layout_.root).kind == kDictionary);
    visit(layout_.root, 1);
  }

 private:
  /// A big-endian number. Throws unless it lies below `end` and is no larger than a list can be.
  [[nodiscard]] std::size_t number(std::size_t at, std::size_t width, std::size_t end) const {
    require(width >= 1 && width <= 8 && at <= end && width <= end - at);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
      value = value << 8 | static_cast<unsigned char>(list_[at + i]);
    require(value <= kMaxPropertyListBytes);
    return value;
  }

  [[nodiscard]] Layout readLayout() const {
    require(list_.size() >= kHeaderBytes + kTrailerBytes);
    const std::size_t trailer = list_.size() - kTrailerBytes;
    const auto field = [&](std::size_t at, std::size_t width) {
      return number(trailer + at, width, list_.size());
    };
    const Layout layout{field(6, 1), field(7, 1), field(8, 8), field(16, 8), field(24, 8)};
    require(layout.offsetBytes >= 1 && layout.offsetBytes <= 8);
    require(layout.referenceBytes >= 1 && layout.referenceBytes <= 8);
    require(layout.tableStart >= kHeaderBytes && layout.tableStart <= trailer);
    require(layout.objectCount <= (trailer - layout.tableStart) / layout.offsetBytes);
    return layout;
  }

  [[nodiscard]] Object objectAt(std::size_t index) const {
    require(index < layout_.objectCount);
    const std::size_t entry = layout_.tableStart + index * layout_.offsetBytes;
    const std::size_t at = number(entry, layout_.offsetBytes, list_.size());
    require(at >= kHeaderBytes && at < layout_.tableStart);
    const unsigned marker = static_cast<unsigned char>(list_[at]);
    Object object{marker >> 4, at + 1, marker & 0xF};
    const bool hasLength = object.kind >= kData && object.kind != kUid;
    if (hasLength && object.count == 0xF) readLongCount(object);
    return object;
  }

  /// The count of a large object is an integer object of its own, between marker and payload.
  void readLongCount(Object& object) const {
    require(object.start < layout_.tableStart);
    const unsigned marker = static_cast<unsigned char>(list_[object.start]);
    require(marker >> 4 == kInteger && (marker & 0xF) <= 3);
    const std::size_t width = std::size_t{1} << (marker & 0xF);
    object.count = number(object.start + 1, width, layout_.tableStart);
    object.start += 1 + width;
  }

  [[nodiscard]] std::size_t payloadBytes(const Object& object) const {
    switch (object.kind) {
      case kSimple: return 0;
      case kInteger: require(object.count <= 4); return std::size_t{1} << object.count;
      case kReal: require(object.count == 2 || object.count == 3); return 1u << object.count;
      case kDate: require(object.count == 3); return 8;
      case kUid: return object.count + 1;
      case kData:
      case kAscii: return object.count;
      case kUtf16: return object.count * 2;
      case kArray: return object.count * layout_.referenceBytes;
      case kDictionary: return object.count * layout_.referenceBytes * 2;
      default: failMalformed();
    }
  }

  void visit(std::size_t index, std::size_t depth) {
    const Object object = objectAt(index);
    const std::size_t payload = payloadBytes(object);
    require(object.start <= layout_.tableStart && payload <= layout_.tableStart - object.start);
    unfolded_ += kBytesPerObject + payload;
    if (unfolded_ > kMaxUnfoldedPropertyListBytes) throw propertyListError("unfolds to too much");
    if (object.kind == kArray) visitReferences(object, object.count, depth);
    if (object.kind == kDictionary) visitReferences(object, object.count * 2, depth);
  }

  void visitReferences(const Object& object, std::size_t count, std::size_t depth) {
    if (depth > kMaxPropertyListDepth)
      throw propertyListError("more than " + std::to_string(kMaxPropertyListDepth) +
                              " levels of nesting");
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t at = object.start + i * layout_.referenceBytes;
      const std::size_t index = number(at, layout_.referenceBytes, layout_.tableStart);
      // The first half of a dictionary's references are its keys.
      if (object.kind == kDictionary && i < object.count) checkKey(objectAt(index));
      visit(index, depth + 1);
    }
  }

  /// A key is text without NUL, at which libplist would end the process.
  void checkKey(const Object& key) const {
    require(key.kind == kAscii || key.kind == kUtf16);
    const std::size_t width = key.kind == kAscii ? 1 : 2;
    for (std::size_t i = 0; i < key.count; ++i)
      require(number(key.start + i * width, width, layout_.tableStart) != 0);
  }

  std::string_view list_;
  Layout layout_;
  std::size_t unfolded_ = 0;
};

}  // namespace

void checkBinaryShape(std::string_view bytes) { ObjectWalk(bytes).run(); }

namespace {

/// How deep a dictionary or array may be. The element around the whole list adds one level.
constexpr std::size_t kMaxContainerDepth = kMaxPropertyListDepth + 1;

/// Throws unless each numeric reference in `text` names a character. libplist ends the process over
/// a key that holds U+0000.
void checkReferences(std::string_view text) {
  for (std::size_t at = 0; (at = text.find("&#", at)) != text.npos;) {
    at += 2;
    const bool isHexadecimal = text.substr(at).starts_with('x');
    if (isHexadecimal) ++at;
    std::uint32_t value = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + at, end, value, isHexadecimal ? 16 : 10);
    const bool isWhole = read.ec == std::errc() && read.ptr != end && *read.ptr == ';';
    if (!isWhole || value == 0 || value > 0x10FFFF)
      throw propertyListError("a reference names no character");
  }
}

/// Walks the markup of a document and keeps track of the open elements.
class MarkupWalk {
 public:
  explicit MarkupWalk(std::string_view document) : rest_(document) {}

  void run() {
    for (;;) {
      checkReferences(rest_.substr(0, rest_.find('<')));
      if (!skipTo("<")) break;
      if (rest_.starts_with("<!--"))
        skipPast("<!--", "-->");
      else if (rest_.starts_with("<![CDATA["))
        skipPast("<![CDATA[", "]]>");
      else if (rest_.starts_with("<?"))
        skipPast("<?", "?>");
      else if (rest_.starts_with("<!"))
        readDeclaration();
      else
        readTag();
    }
    if (!open_.empty()) throw propertyListError(named(open_.back()) + " is never closed");
  }

 private:
  static std::string named(std::string_view element) { return "<" + std::string(element) + ">"; }

  bool skipTo(std::string_view mark) {
    const std::size_t at = rest_.find(mark);
    rest_.remove_prefix(at == rest_.npos ? rest_.size() : at);
    return at != rest_.npos;
  }

  void skipPast(std::string_view begin, std::string_view end) {
    rest_.remove_prefix(begin.size());
    // "<!-->" is where readers disagree about the end of a comment.
    if (rest_.starts_with('>') || rest_.starts_with("->"))
      throw propertyListError("a comment or instruction ends where it begins");
    if (!skipTo(end)) throw propertyListError(std::string(begin) + " has no end");
    rest_.remove_prefix(end.size());
  }

  /// Takes off everything up to and including the next '>'.
  std::string_view takeMarkup() {
    const std::size_t end = rest_.find_first_of("<>", 1);
    if (end == rest_.npos || rest_[end] == '<') throw propertyListError("a tag has no end");
    const std::string_view markup = rest_.substr(0, end + 1);
    rest_.remove_prefix(end + 1);
    return markup;
  }

  void readDeclaration() {
    const std::string_view markup = takeMarkup();
    if (!markup.starts_with("<!DOCTYPE") || markup.find('[') != markup.npos)
      throw propertyListError("declarations other than a plain DOCTYPE are not read");
  }

  void readTag() {
    std::string_view tag = takeMarkup();
    tag = tag.substr(1, tag.size() - 2);
    const bool closes = tag.starts_with('/');
    const bool isEmpty = tag.ends_with('/');
    if (closes) tag.remove_prefix(1);
    if (closes && isEmpty) throw propertyListError("a tag opens and closes at once");
    const std::string_view name = tag.substr(0, tag.find_first_of(" \r\n\t/"));
    if (name.empty()) throw propertyListError("a tag has no name");
    if (closes)
      close(name);
    else if (!isEmpty)
      open(name);
  }

  void open(std::string_view name) {
    const bool holdsOthers = name == "dict" || name == "array";
    const std::size_t deepest = holdsOthers ? kMaxContainerDepth : kMaxContainerDepth + 1;
    if (open_.size() >= deepest)
      throw propertyListError("more than " + std::to_string(kMaxPropertyListDepth) +
                              " levels of nesting");
    open_.push_back(name);
  }

  void close(std::string_view name) {
    if (open_.empty() || open_.back() != name)
      throw propertyListError("</" + std::string(name) + "> closes nothing");
    open_.pop_back();
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
};

}  // namespace

void checkXmlShape(std::string_view bytes) {
  if (bytes.find('\0') != bytes.npos) throw propertyListError("neither XML nor a binary list");
  MarkupWalk(bytes).run();
}

}  // namespace zelvora
