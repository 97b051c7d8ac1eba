#include <cstdint>

#include <ZelvoraSDK/adapters/plist/private/shape.h>
#include <ZelvoraSDK/adapters/plist/property_list.h>
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

/// Where the trailer says that things are.
struct Layout {
  std::size_t offsetBytes = 0;     ///< Width of an entry of the offset table.
  std::size_t referenceBytes = 0;  ///< Width of a reference to an object.
  std::size_t objectCount = 0;
  std::size_t root = 0;
  std::size_t tableStart = 0;
};

/// An object's kind and where its payload stands.
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

}  // namespace zelvora
