#include <ZelvoraSDK/workbench/lint.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/workbench/json_places.h>
#include <ZelvoraSDK/workbench/private/checks.h>
#include <ZelvoraSDK/workbench/private/remedies.h>

namespace zelvora {

std::string_view toString(LintSeverity severity) {
  switch (severity) {
    case LintSeverity::error: return "error";
    case LintSeverity::warning: return "warning";
    case LintSeverity::note: return "note";
  }
  return "";
}

std::vector<LintFinding> lintSpec(std::string_view text, const LintProgress& progress) {
  using namespace workbench;
  const LintedSpec spec(text);
  Findings findings(text);
  checkFormat(text, spec, findings);
  checkSettings(spec, findings);
  if (spec.prepared()) {
    const RoutedTexts routed(spec, progress);
    Remedies remedies(spec, routed);
    // Errors come first, so that they get their remedies before the tries run out.
    checkRoutes(spec, routed, remedies, findings);
    checkWords(spec, routed, remedies, findings);
  }
  std::vector<LintFinding> all = std::move(findings.all());
  std::ranges::stable_sort(all, {}, [](const LintFinding& each) {
    return std::tuple(each.place.line, each.place.column, each.severity);
  });
  return all;
}

namespace {

using Value = JsonPlaces::Value;

std::string childPath(const std::string& path, const std::string& key) {
  return path.empty() ? key : path + "." + key;
}

/// The white space before a new last child: what follows the opening bracket when that includes a
/// line break, else one space.
std::string indentOf(std::string_view text, const Value& container) {
  std::size_t end = container.begin + 1;
  while (end < container.end && isJsonSpace(text[end])) ++end;
  const std::string_view gap = text.substr(container.begin + 1, end - container.begin - 1);
  return gap.find('\n') == gap.npos ? " " : std::string(gap);
}

/// Puts `child` after the last child of the object or array at `container`.
std::string withLastChild(std::string_view text, const Value& container, std::string_view child) {
  std::size_t end = container.end - 1;
  while (end > container.begin + 1 && isJsonSpace(text[end - 1])) --end;
  const bool isEmpty = end == container.begin + 1;
  std::string changed(text.substr(0, end));
  if (!isEmpty) changed += "," + indentOf(text, container);
  changed += child;
  return changed.append(text.substr(isEmpty ? container.end - 1 : end));
}

std::string replaced(std::string_view text, std::size_t begin, std::size_t end,
                     std::string_view with) {
  return std::string(text.substr(0, begin)).append(with).append(text.substr(end));
}

bool isObject(std::string_view text, const Value& value) { return text[value.begin] == '{'; }

std::string setMember(std::string_view text, const std::string& path, const std::string& key,
                      const std::string& json) {
  const JsonPlaces places(text);
  const Value* object = places.find(path);
  if (!object) {
    // The format's own keys have no dots, so the path can be split at them.
    const std::size_t dot = path.rfind('.');
    const std::string above = dot == path.npos ? "" : path.substr(0, dot);
    const std::string name = dot == path.npos ? path : path.substr(dot + 1);
    return setMember(text, above, name, "{" + toJson(key) + ": " + json + "}");
  }
  if (!isObject(text, *object)) return std::string(text);
  if (const Value* member = places.find(childPath(path, key)))
    return replaced(text, member->begin, member->end, json);
  return withLastChild(text, *object, toJson(key) + ": " + json);
}

std::string append(std::string_view text, const SpecEdit& edit) {
  const JsonPlaces places(text);
  const Value* array = places.find(childPath(edit.path, edit.key));
  if (!array || text[array->begin] != '[')
    return setMember(text, edit.path, edit.key, "[" + edit.json + "]");
  return withLastChild(text, *array, edit.json);
}

/// Removes a child together with the comma after it or, for the last one, before it.
std::string remove(std::string_view text, const SpecEdit& edit) {
  const JsonPlaces places(text);
  const Value* value = places.find(edit.path);
  if (!value || edit.path.empty()) return std::string(text);
  std::size_t end = value->end;
  while (end < text.size() && isJsonSpace(text[end])) ++end;
  if (text[end] == ',') {
    ++end;
    while (end < text.size() && isJsonSpace(text[end])) ++end;
    return replaced(text, value->memberBegin, end, "");
  }
  std::size_t begin = value->memberBegin;
  while (begin > 0 && isJsonSpace(text[begin - 1])) --begin;
  if (begin > 0 && text[begin - 1] == ',') --begin;
  return replaced(text, begin, value->end, "");
}

std::string rename(std::string_view text, const SpecEdit& edit) {
  const JsonPlaces places(text);
  const Value* value = places.find(edit.path);
  if (!value || value->memberBegin == value->begin) return std::string(text);
  return replaced(text, value->memberBegin, value->begin, toJson(edit.key) + ": ");
}

std::string withEdit(std::string_view text, const SpecEdit& edit) {
  switch (edit.kind) {
    case SpecEdit::Kind::set: return setMember(text, edit.path, edit.key, edit.json);
    case SpecEdit::Kind::append: return append(text, edit);
    case SpecEdit::Kind::remove: return remove(text, edit);
    case SpecEdit::Kind::rename: return rename(text, edit);
  }
  return std::string(text);
}

}  // namespace

std::string withEdits(std::string_view text, const std::vector<SpecEdit>& edits) {
  std::string changed(text);
  for (const SpecEdit& edit : edits) changed = withEdit(changed, edit);
  return changed;
}

}  // namespace zelvora
