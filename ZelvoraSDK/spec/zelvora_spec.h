#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

/// Any spec model that the router, the validator and the façade accept.
class ZelvoraSpec {
 public:
  virtual ~ZelvoraSpec() = default;

  [[nodiscard]] virtual std::string appId() const = 0;
  [[nodiscard]] virtual std::string locale() const = 0;
  /// Made anew on each call, so keep the answer. May be fatal on tasks that break their
  /// preconditions.
  [[nodiscard]] virtual std::vector<ZelvoraTaskSpec> tasks() const = 0;

  /// What is wrong with the spec as a whole; empty when nothing is.
  [[nodiscard]] std::vector<std::string> validateSpec() const;
  /// Does nothing. Kept so that call sites compile; nothing may depend on it stopping the program.
  void assertValid(const char* file, int line) const;

 protected:
  ZelvoraSpec() = default;
  ZelvoraSpec(const ZelvoraSpec&) = default;
  ZelvoraSpec(ZelvoraSpec&&) = default;
  ZelvoraSpec& operator=(const ZelvoraSpec&) = default;
  ZelvoraSpec& operator=(ZelvoraSpec&&) = default;
};

}  // namespace zelvora
