#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/confidence.h>
#include <benchmarks/voice/tally.h>

namespace zelvora::bench {

struct EarOptions {
  std::optional<std::filesystem::path> model;                   ///< For the second recogniser.
  std::optional<std::filesystem::path> features;                ///< Where the evidence is appended.
  std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< Clips of each kind.
  unsigned threads = 1;
};

/// What one recogniser made of one clip, before and after the match and the estimate.
struct Heard {
  std::string recogniser;
  Answer decoded;
  Answer judged;
  audio::Evidence evidence{};
};

/// One domain's recognisers, loaded once per thread. Each clip is decoded once by each of them.
class Ears {
 public:
  /// Throws Error when a model can't be loaded.
  Ears(const Domain& domain, const EarOptions& options);
  ~Ears();
  Ears(const Ears&) = delete;
  Ears& operator=(const Ears&) = delete;

  /// Says on standard error how far it is.
  Tallies hear(const ClipSet& set);

 private:
  class Lane;

  void count(const ClipSet& set, std::size_t index, const std::vector<Heard>& all,
             Tallies& tallies);

  const Domain& domain_;
  EarOptions options_;
  std::vector<std::unique_ptr<Lane>> lanes_;
  std::ofstream features_;
};

}  // namespace zelvora::bench
