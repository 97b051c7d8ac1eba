#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/routing/private/best_tasks.h>
#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/frequent_words.h>
#include <ZelvoraSDK/routing/private/postings.h>
#include <ZelvoraSDK/routing/private/unit_counters.h>
#include <ZelvoraSDK/routing/private/word_automaton.h>

namespace zelvora {

/// A keyword of several words, listed under its rarest one.
struct Phrase {
  std::uint32_t task = 0;
  std::uint32_t others = 0;  ///< Where its other words start in `TaskIndex::phraseWords`.
};

/// What the words of an utterance mean to the tasks. Immutable; `indexTasks` makes it.
struct TaskIndex {
  WordAutomaton automaton;
  FrequentWords frequentWords;             ///< Those stand in no other list of examples.
  Postings<std::uint32_t> exampleSlots;    ///< A slot for each time that an example has the word.
  Postings<std::uint32_t> singleKeywords;  ///< The task of each keyword that is just the word.
  Postings<Phrase> phrases;
  std::vector<WordId> phraseWords;      ///< Each phrase's list ends with `kNoWord`.
  std::vector<std::uint32_t> firstRow;  ///< By task; its rows end where the next one's begin.
  std::vector<std::uint32_t> taskOfRow;

  [[nodiscard]] std::size_t taskCount() const { return firstRow.size() - 1; }
  [[nodiscard]] std::size_t rowCount() const { return taskOfRow.size(); }
  [[nodiscard]] std::size_t wordCount() const { return automaton.wordCount(); }
  [[nodiscard]] std::size_t memoryBytes() const;
};

}  // namespace zelvora
