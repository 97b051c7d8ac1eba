#include <charconv>
#include <cstdint>
#include <vector>

#include <ZelvoraSDK/adapters/plist/private/shape.h>
#include <ZelvoraSDK/adapters/plist/property_list.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

/// Deepest place of a dictionary or array: the element around them all comes on top.
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

/// Goes through the markup of a document and keeps the elements that are open.
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

  /// Up to and with the next '>', which is taken off.
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
