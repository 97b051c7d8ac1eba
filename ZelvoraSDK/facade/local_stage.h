#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/facade/candidate_choice.h>
#include <ZelvoraSDK/facade/prepared_spec.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/routing/context_engine.h>
#include <ZelvoraSDK/routing/local_router.h>

namespace zelvora {

/// An utterance on its way to the router.
struct CleanedUtterance {
  std::string replaced;    ///< Trimmed, and with the locale's replacements.
  std::string normalized;  ///< The normaliser's output for that; may be empty.
};

/// Takes the text by value: utterances may be long, and this one is done with.
CleanedUtterance cleanUtterance(std::string text, const PreparedSpec& spec,
                                const std::string& locale);

/// What the device makes of a cleaned utterance.
struct LocalAnswer {
  std::vector<ExpandedCandidate> candidates;  ///< Empty when the spec's context is off.
  ZelvoraResult result;
};

/// Routes the candidates or, with none good enough, the utterance itself.
/// REQUIRES: `spec.tasks()` is not null.
LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const ZelvoraLocalRouter& router,
                          const ExpansionMoment& moment);

/// The same with `route` in place of a router, which neither reports nor counts.
LocalAnswer answerLocally(const std::string& utterance, const PreparedSpec& spec,
                          const std::string& locale, const RouteLocally& route,
                          const ExpansionMoment& moment);

}  // namespace zelvora
