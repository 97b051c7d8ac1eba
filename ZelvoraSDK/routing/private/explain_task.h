#pragma once

#include <ZelvoraSDK/routing/compiled_tasks.h>
#include <ZelvoraSDK/routing/private/found_words.h>
#include <ZelvoraSDK/routing/private/word_automaton.h>

namespace zelvora {

/// Tells which keyword and which token of `task` was found, from the same marks that its score
/// comes from. REQUIRES: `task` is one of those that `automaton` was made for.
[[nodiscard]] TaskPoints explainTask(const WordAutomaton& automaton, const FoundWords& found,
                                     const ZelvoraTaskSpec& task);

}  // namespace zelvora
