#include <benchmarks/voice/ears.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <future>
#include <span>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <benchmarks/timing.h>
#ifdef ZELVORA_HAS_SHERPA
#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>
#endif

namespace zelvora::bench {
namespace {

constexpr std::size_t kBuffer = 1024;

SpeechResult resultOf(std::vector<SpeechSegment> words) {
  SpeechResult result{.segments = std::move(words), .isFinal = true};
  for (const auto& word : result.segments)
    result.text += (result.text.empty() ? "" : " ") + word.text;
  return result;
}

template <class Engine>
Heard listen(const char* recogniser, Engine& engine, const Clip& clip, const OpenedBy& openedBy) {
  const double start = threadSeconds();
  engine.begin(openedBy);
  std::span<const std::int16_t> rest(clip.samples);
  for (; rest.size() > kBuffer; rest = rest.subspan(kBuffer)) {
    engine.hear(rest.first(kBuffer));
    static_cast<void>(engine.partialResult());
  }
  const double endOfAudio = threadSeconds();
  const auto answer = [&](SpeechResult result) {
    const double now = threadSeconds();
    return Answer{.result = std::move(result),
                  .seconds = now - start,
                  .finalMilliseconds = 1e3 * (now - endOfAudio)};
  };
  engine.hear(rest);
  const auto decoded = engine.decoded();
  Heard heard{.recogniser = recogniser, .decoded = answer(resultOf(decoded.words)), .judged = {}};
  heard.judged = answer(engine.judged(decoded));
  heard.evidence = engine.evidence(decoded);
  return heard;
}

/// One line per clip: recogniser, kind of sound, clip, whether its text opens the right task,
/// evidence.
void write(std::ostream& out, const std::string& sound, std::size_t index, bool isRight,
           const Heard& heard) {
  out << heard.recogniser << '\t' << sound << '\t' << index << '\t' << isRight;
  for (const double value : heard.evidence) out << '\t' << value;
  out << '\n';
}

OpenedBy openedIn(const Domain& domain) {
  return [&domain](const std::string& text) { return domain.taskOf(text); };
}

/// How far the first thread is, which is as far as the others.
class Progress {
 public:
  Progress(const ClipSet& set, std::size_t count) : name_(set.name), count_(count) {}

  void show(std::size_t done) {
    if (done * 4 < next_ * count_) return;
    std::fprintf(stderr, "%s: %zu of %zu clips\n", name_.c_str(), done, count_);
    next_ = done * 4 / count_ + 1;
  }

 private:
  std::string name_;
  std::size_t count_;
  std::size_t next_ = 0;  ///< The quarter that is shown next.
};

}  // namespace

/// The recognisers of one thread.
class Ears::Lane {
 public:
  Lane(const Domain& domain, const EarOptions& options)
      : openedBy_(openedIn(domain)), sphinx_(domain.vocabulary()) {
#ifdef ZELVORA_HAS_SHERPA
    if (options.model)
      transducer_.emplace(SherpaModel{.folder = *options.model}, domain.vocabulary());
#else
    static_cast<void>(options);
#endif
  }

  std::vector<Heard> hear(const Clip& clip) {
    std::vector<Heard> heard{listen("pocketsphinx", sphinx_, clip, openedBy_)};
#ifdef ZELVORA_HAS_SHERPA
    if (transducer_) heard.push_back(listen("sherpa", *transducer_, clip, openedBy_));
#endif
    return heard;
  }

 private:
  OpenedBy openedBy_;
  sphinx::Decoder sphinx_;
#ifdef ZELVORA_HAS_SHERPA
  std::optional<sherpa::Transducer> transducer_;
#endif
};

Ears::Ears(const Domain& domain, const EarOptions& options) : domain_(domain), options_(options) {
  for (unsigned i = 0; i < std::max(1U, options.threads); ++i)
    lanes_.push_back(std::make_unique<Lane>(domain, options));
  if (options.features) features_.open(*options.features, std::ios::app);
}

Ears::~Ears() = default;

Tallies Ears::hear(const ClipSet& set) {
  std::vector<std::vector<Heard>> all(std::min(options_.limit, set.clips.size()));
  // Each thread has clips of its own, so nothing is shared that changes.
  const auto work = [&](std::size_t lane) {
    Progress progress(set, all.size());
    for (std::size_t i = lane; i < all.size(); i += lanes_.size()) {
      if (lane == 0) progress.show(i);
      all[i] = lanes_[lane]->hear(set.clips[i]);
    }
  };
  std::vector<std::future<void>> others;
  for (std::size_t lane = 1; lane < lanes_.size(); ++lane)
    others.push_back(std::async(std::launch::async, work, lane));
  work(0);
  for (auto& other : others) other.get();

  Tallies tallies;
  for (std::size_t i = 0; i < all.size(); ++i) count(set, i, all[i], tallies);
  return tallies;
}

void Ears::count(const ClipSet& set, std::size_t index, const std::vector<Heard>& all,
                 Tallies& tallies) {
  const Clip& clip = set.clips[index];
  for (const Heard& heard : all) {
    tallies[heard.recogniser + ", decoder"].add(clip, heard.decoded, domain_);
    tallies[heard.recogniser].add(clip, heard.judged, domain_);
    if (features_.is_open() && !heard.judged.result.segments.empty())
      write(features_, set.name, index,
            !clip.taskId.empty() && domain_.taskOf(heard.judged.result.text) == clip.taskId, heard);
  }
  if (all.size() < 2) return;
  const Answer& first = all[0].judged;
  const Answer& second = all[1].judged;
  // Both decode at the same time, on threads of their own.
  tallies["together"].add(
      clip,
      {.result = combined({first.result, domain_.taskOf(first.result.text)},
                          {second.result, domain_.taskOf(second.result.text)}),
       .seconds = first.seconds + second.seconds,
       .finalMilliseconds = std::max(first.finalMilliseconds, second.finalMilliseconds)},
      domain_);
}

}  // namespace zelvora::bench
