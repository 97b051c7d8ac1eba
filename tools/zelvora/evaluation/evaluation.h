#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/outcome/result.h>

#include "labelled.h"

namespace zelvora::tool {

/// What an outcome is worth.
enum class Verdict {
  right,
  wrong,
  choicesWith,
  choicesWithout,
  missed,
  outOfScopeOpened,
  outOfScopeChoices,
  outOfScopeMissed,
};

/// One utterance, judged.
struct Judged {
  Verdict verdict = Verdict::missed;
  std::optional<std::string> opened;  ///< The task, or the screen when no task has it.
  std::optional<double> confidence;   ///< Of the result, or of its first choice.
  std::string outcome;                ///< "opens cart", "choices cart, orders" or "nothing".
};

/// Judges outcomes by the tasks of one spec.
class Judge {
 public:
  explicit Judge(const PreparedSpec& spec);

  [[nodiscard]] Judged judge(const LabelledUtterance& utterance, const ZelvoraResult& result) const;

  /// In the spec's order.
  [[nodiscard]] const std::vector<std::string>& taskIds() const { return taskIds_; }

 private:
  [[nodiscard]] std::string taskOf(const std::optional<std::string>& taskId,
                                   const std::string& screen) const;

  std::vector<std::string> taskIds_;
  std::map<std::string, std::string> taskOfScreen_;  ///< The first that opens it.
};

/// How often each verdict came.
struct Counts {
  std::size_t inScope = 0;
  std::size_t outOfScope = 0;
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::size_t choicesWith = 0;
  std::size_t choicesWithout = 0;
  std::size_t missed = 0;
  std::size_t outOfScopeOpened = 0;
  std::size_t outOfScopeChoices = 0;
  std::size_t outOfScopeMissed = 0;

  void add(Verdict verdict);
};

/// The results of labelled utterances on one spec.
struct Evaluation : Counts {
  struct Task {
    std::string id;
    std::size_t expected = 0;
    std::size_t right = 0;
    std::size_t opened = 0;
  };
  struct Confusion {
    std::string expected;
    std::string opened;
    std::size_t count = 0;
  };

  std::vector<Task> tasks;            ///< In the spec's order.
  std::vector<Confusion> confusions;  ///< The commonest first.
};

/// Counts verdicts. REQUIRES: `judged` has one for each utterance.
Evaluation count(const std::vector<LabelledUtterance>& utterances,
                 const std::vector<Judged>& judged, const std::vector<std::string>& taskIds);

/// What the device makes of each utterance with a fresh memory and no learning: the same for any
/// number of threads. `progress` is called on the calling thread.
std::vector<ZelvoraResult> answerAll(const std::vector<LabelledUtterance>& utterances,
                                     const PreparedSpec& spec, unsigned threads,
                                     const std::function<void(double)>& progress = {});

/// Writes the members of an evaluation into an open object.
void writeMembers(JsonWriter& out, const Evaluation& evaluation);
void writeJson(JsonWriter& out, const Evaluation& evaluation);

/// The share of `count` in `all` with its 95 % interval, after Wilson.
struct Share {
  double share = 0;
  double low = 0;
  double high = 1;
};
Share shareOf(std::size_t count, std::size_t all);

}  // namespace zelvora::tool
