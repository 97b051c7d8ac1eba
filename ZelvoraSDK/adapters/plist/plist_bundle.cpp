#include <ZelvoraSDK/adapters/plist/plist_bundle.h>

#include <locale.h>
#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include <ZelvoraSDK/adapters/plist/private/shape.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
struct FreeList {
  void operator()(void* node) const { plist_free(node); }
};
using List = std::unique_ptr<void, FreeList>;
using CString = std::unique_ptr<char, Free>;

/// Puts this thread into the C locale while it exists. libplist reads numbers by the thread's
/// locale, and in a German one "0.65" would be 0.
class PlainNumbers {
 public:
  PlainNumbers() : before_(::uselocale(plain_)) {}
  ~PlainNumbers() {
    ::uselocale(before_);
    ::freelocale(plain_);
  }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  locale_t plain_ = ::newlocale(LC_ALL_MASK, "C", nullptr);
  locale_t before_;
};

/// The tree of `bytes`, which must have passed their check; null when libplist can't read them.
List parsed(std::string_view bytes) {
  const PlainNumbers plainNumbers;
  plist_t root = nullptr;
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if (bytes.starts_with("bplist00")) {
    checkBinaryShape(bytes);
    plist_from_bin(bytes.data(), size, &root);
  } else {
    checkXmlShape(bytes);
    plist_from_xml(bytes.data(), size, &root);
  }
  return List(root);
}

/// Whether an integer with its top bit set is a negative number. libplist's own output is the only
/// way to know: through its interface it looks like a large positive one.
bool isWrittenNegative(plist_t node) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &text, &length);
  const CString xml(text);
  return xml && std::string_view(text, length).find(">-") != std::string_view::npos;
}

double integerOf(plist_t node) {
  std::uint64_t value = 0;
  plist_get_uint_val(node, &value);
  const auto asSigned = static_cast<std::int64_t>(value);
  if (asSigned < 0 && isWrittenNegative(node)) return static_cast<double>(asSigned);
  return static_cast<double>(value);
}

double realOf(plist_t node) {
  double value = 0;
  plist_get_real_val(node, &value);
  return value;
}

std::string stringOf(plist_t node) {
  std::uint64_t length = 0;
  const char* text = plist_get_string_ptr(node, &length);
  return text ? repairedUtf8({text, length}) : std::string();
}

void take(PropertyListEntries& entries, const std::string& key, plist_t node) {
  const plist_type type = plist_get_node_type(node);
  if (type == PLIST_STRING) entries.strings.insert_or_assign(key, stringOf(node));
  if (type == PLIST_UINT) entries.numbers.insert_or_assign(key, integerOf(node));
  if (type != PLIST_REAL) return;
  if (const double value = realOf(node); std::isfinite(value))
    entries.numbers.insert_or_assign(key, value);
}

PropertyListEntries entriesOf(plist_t dictionary) {
  PropertyListEntries entries;
  plist_dict_iter position = nullptr;
  plist_dict_new_iter(dictionary, &position);
  const std::unique_ptr<void, Free> owner(position);
  for (;;) {
    char* key = nullptr;
    plist_t node = nullptr;
    plist_dict_next_item(dictionary, position, &key, &node);
    const CString keyOwner(key);
    if (!key || !node) return entries;
    take(entries, repairedUtf8(key), node);
  }
}

}  // namespace

PropertyListEntries readPropertyList(std::string_view bytes) {
  if (bytes.size() > kMaxPropertyListBytes)
    throw propertyListError("larger than " + std::to_string(kMaxPropertyListBytes) + " bytes");
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());

  const List list = parsed(bytes);
  if (!list) throw propertyListError("malformed");
  if (plist_get_node_type(list.get()) != PLIST_DICT)
    throw propertyListError("the top is no dictionary");
  return entriesOf(list.get());
}

namespace {

template <class Value>
std::optional<Value> valueIn(const std::map<std::string, Value>& map, const std::string& key) {
  const auto at = map.find(key);
  return at == map.end() ? std::nullopt : std::optional(at->second);
}

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& cause) {
  throw Error("AppBundle", 1, path.string() + ": " + cause);
}

PropertyListEntries settingsIn(const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  const fs::path file = folder / "Info.plist";
  std::error_code failure;
  const fs::file_type type = fs::status(file, failure).type();
  if (type == fs::file_type::not_found) return {};
  if (type == fs::file_type::none) fail(file, failure.message());
  if (type != fs::file_type::regular) fail(file, "is no regular file");
  // Checked before all of it is in memory.
  if (fs::file_size(file) > kMaxPropertyListBytes)
    fail(file, "larger than " + std::to_string(kMaxPropertyListBytes) + " bytes");

  const std::string bytes = readFile(file);
  try {
    return readPropertyList(bytes);
  } catch (const Error& error) {
    fail(file, error.description());
  }
}

}  // namespace

PlistBundle::PlistBundle(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder_, ignored)) fail(folder_, "is no folder");
  entries_ = settingsIn(folder_);
}

std::optional<std::filesystem::path> PlistBundle::resource(const std::string& name,
                                                           const std::string& extension) const {
  using std::string_view_literals::operator""sv;
  const std::string fileName = name + '.' + extension;
  if (fileName.find_first_of("/\0"sv) != std::string::npos) return std::nullopt;
  std::error_code ignored;
  std::filesystem::path path = folder_ / fileName;
  if (!std::filesystem::is_regular_file(path, ignored)) return std::nullopt;
  return path;
}

std::optional<std::string> PlistBundle::stringSetting(const std::string& key) const {
  return valueIn(entries_.strings, key);
}

std::optional<double> PlistBundle::numberSetting(const std::string& key) const {
  return valueIn(entries_.numbers, key);
}

std::optional<std::string> PlistBundle::identifier() const {
  return stringSetting("CFBundleIdentifier");
}

std::string PlistBundle::description() const { return folder_.string(); }

}  // namespace zelvora
