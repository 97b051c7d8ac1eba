#include "destination.h"

#include <ZelvoraSDK/base/json_read.h>

namespace zelvora::serve {
namespace {

using Phrases = std::vector<std::string>;

/// The list under `key`, or the one for `locale` in the table under `localizedKey` if that has any.
Phrases phrasesIn(const JsonCursor& task, std::string_view key, std::string_view localizedKey,
                  std::string_view locale) {
  Phrases phrases;
  task.readIfPresent(key, phrases);
  if (const auto table = task.find(localizedKey)) {
    const auto own = table->optional<Phrases>(locale);
    if (own && !own->empty()) return *own;
  }
  return phrases;
}

void append(Phrases& phrases, const Phrases& more) {
  phrases.insert(phrases.end(), more.begin(), more.end());
}

Destination taskIn(const JsonCursor& in, std::string_view locale) {
  Destination task;
  task.id = in.find("id") ? in.required<std::string>("id") : in.required<std::string>("taskId");
  task.title = task.id;
  in.readIfPresent("title", task.title);
  in.readIfPresent("screen_id", task.screenId);
  in.readIfPresent("screenId", task.screenId);
  in.readIfPresent("defaultParams", task.params);
  task.phrases = phrasesIn(in, "keywords", "keywordsByLocale", locale);
  append(task.phrases, phrasesIn(in, "examples", "examplesByLocale", locale));
  if (const auto synonyms = in.optional<Phrases>("synonyms")) append(task.phrases, *synonyms);
  return task;
}

Destination itemIn(const JsonCursor& in) {
  Destination item;
  in.read("id", item.id);
  in.read("title", item.title);
  in.read("screenId", item.screenId);
  in.readIfPresent("phrases", item.phrases);
  in.readIfPresent("params", item.params);
  in.read("say", item.say);
  return item;
}

}  // namespace

std::vector<Destination> tasksIn(const JsonCursor& document, std::string_view locale) {
  std::vector<Destination> tasks;
  const auto list = document.find("tasks");
  if (!list) return tasks;
  for (const boost::json::value& task : list->array())
    tasks.push_back(taskIn(JsonCursor(*list, tasks.size(), task), locale));
  return tasks;
}

std::vector<Destination> catalogueIn(const JsonCursor& document) {
  std::vector<Destination> items;
  for (const boost::json::value& item : document.array())
    items.push_back(itemIn(JsonCursor(document, items.size(), item)));
  return items;
}

}  // namespace zelvora::serve
