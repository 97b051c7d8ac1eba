#include <ZelvoraSDK/workbench/json_places.h>

#include <charconv>
#include <utility>

#include <ZelvoraSDK/base/json_read.h>

namespace zelvora {
namespace {

std::string decodedKey(std::string_view quoted) {
  if (quoted.find('\\') == quoted.npos) return std::string(quoted.substr(1, quoted.size() - 2));
  const JsonDocument document = parseJson(quoted);
  const auto& text = document.root().get_string();
  return {text.data(), text.size()};
}

/// Whether a step of a path may end before `rest`.
bool endsStep(std::string_view rest) {
  return rest.empty() || rest.front() == '.' || rest.front() == '[';
}

}  // namespace

/// Walks through the text once and counts lines and columns as it goes.
class JsonPlaces::Scanner {
 public:
  Scanner(std::string_view text, std::vector<Node>& nodes) : text_(text), nodes_(nodes) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;  // a byte-order mark has no column
  }

  std::uint32_t scanValue() {
    skipSpace();
    const auto node = static_cast<std::uint32_t>(nodes_.size());
    nodes_.emplace_back().value = {place_, at_, at_, at_};
    switch (peek()) {
      case '{': scanMembers(node); break;
      case '[': scanElements(node); break;
      case '"': skipString(); break;
      default: skipLiteral();
    }
    nodes_[node].value.end = at_;
    return node;
  }

 private:
  [[nodiscard]] char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  void step() {
    if (at_ >= text_.size()) return;
    const char c = text_[at_++];
    if (c == '\n') {
      ++place_.line;
      place_.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
      ++place_.column;
    }
  }

  void skipSpace() {
    while (isJsonSpace(peek())) step();
  }

  void skipString() {
    step();
    while (at_ < text_.size() && peek() != '"') {
      if (peek() == '\\') step();
      step();
    }
    step();
  }

  void skipLiteral() {
    while (at_ < text_.size() && !isJsonSpace(peek()) && peek() != ',' && peek() != ']' &&
           peek() != '}')
      step();
  }

  /// Steps over the comma before the next member or element; false, past the bracket, at the end.
  bool next(char closing) {
    skipSpace();
    if (peek() == ',') {
      step();
      skipSpace();
    }
    if (at_ < text_.size() && peek() != closing) return true;
    step();
    return false;
  }

  void scanElements(std::uint32_t node) {
    nodes_[node].isArray = true;
    step();
    while (next(']')) addChild(node, scanValue());
  }

  void scanMembers(std::uint32_t node) {
    step();
    while (next('}')) {
      const std::size_t begin = at_;
      skipString();
      std::string key = decodedKey(text_.substr(begin, at_ - begin));
      skipSpace();
      step();  // the colon
      const std::uint32_t child = scanValue();
      nodes_[child].key = std::move(key);
      nodes_[child].value.memberBegin = begin;
      addChild(node, child);
    }
  }

  void addChild(std::uint32_t node, std::uint32_t child) { nodes_[node].children.push_back(child); }

  std::string_view text_;
  std::vector<Node>& nodes_;
  std::size_t at_ = 0;
  TextPlace place_;
};

JsonPlaces::JsonPlaces(std::string_view text) { Scanner(text, nodes_).scanValue(); }

const JsonPlaces::Value* JsonPlaces::find(std::string_view path) const {
  Reached deepest;
  return walk(0, path, 0, deepest) ? &nodes_[deepest.node].value : nullptr;
}

const JsonPlaces::Value& JsonPlaces::nearest(std::string_view path) const {
  Reached deepest;
  walk(0, path, 0, deepest);
  return nodes_[deepest.node].value;
}

bool JsonPlaces::walk(std::uint32_t node, std::string_view path, std::size_t at,
                      Reached& deepest) const {
  const bool isWholePath = at == path.size();
  if (isWholePath || at > deepest.length) deepest = {node, at};
  if (isWholePath) return true;
  return nodes_[node].isArray ? walkArray(node, path, at, deepest)
                              : walkObject(node, path, at, deepest);
}

bool JsonPlaces::walkArray(std::uint32_t node, std::string_view path, std::size_t at,
                           Reached& deepest) const {
  const std::vector<std::uint32_t>& children = nodes_[node].children;
  const std::size_t close = path.find(']', at);
  if (path[at] != '[' || close == path.npos) return false;
  std::size_t index = 0;
  const auto read = std::from_chars(path.data() + at + 1, path.data() + close, index);
  if (read.ec != std::errc{} || read.ptr != path.data() + close || index >= children.size())
    return false;
  return walk(children[index], path, close + 1, deepest);
}

bool JsonPlaces::walkObject(std::uint32_t node, std::string_view path, std::size_t at,
                            Reached& deepest) const {
  if (at > 0) {
    if (path[at] != '.') return false;
    ++at;
  }
  const std::vector<std::uint32_t>& children = nodes_[node].children;
  const std::string_view rest = path.substr(at);
  for (auto child = children.rbegin(); child != children.rend(); ++child) {
    const std::string& key = nodes_[*child].key;
    if (rest.starts_with(key) && endsStep(rest.substr(key.size())) &&
        walk(*child, path, at + key.size(), deepest))
      return true;
  }
  return false;
}

}  // namespace zelvora
