#include <ZelvoraSDK/speech/private/sound_path.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <future>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/speech/endpointing.h>

namespace zelvora {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "zelvora-";
constexpr std::string_view kSuffix = ".caf";
constexpr std::size_t kUuidLength = 36;

bool isRecordingName(const std::string& name) {
  return name.size() == kPrefix.size() + kUuidLength + kSuffix.size() &&
         name.starts_with(kPrefix) && name.ends_with(kSuffix);
}

std::optional<AudioData> bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) return std::nullopt;
  AudioData bytes(static_cast<std::size_t>(file.tellg()));
  file.seekg(0);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) return std::nullopt;
  return bytes;
}

void flushIfPossible(AudioFileWriter& writer) {
  try {
    writer.flush();
  } catch (const std::exception&) {
    // The recording is then what is on disk by now.
  }
}

bool isAbandoned(AudioFileFactory& files, const fs::path& path) {
  std::error_code failed;
  const auto written = fs::last_write_time(path, failed);
  if (failed) return false;
  const Seconds age = fs::file_time_type::clock::now() - written;
  return age > kAbandonedAfter || files.isAbandoned(path);
}

}  // namespace

Recording::Recording(AudioFileFactory& files, const fs::path& directory, const AudioFormat& format)
    : path_(directory / (std::string(kPrefix).append(randomUuid()).append(kSuffix))),
      writer_(files.create(path_, format)) {}

Recording::~Recording() {
  std::error_code ignored;
  fs::remove(path_, ignored);
}

std::optional<AudioData> Recording::take() {
  // The writer is still open while we read, so flush it first.
  flushIfPossible(*writer_);
  auto bytes = bytesOf(path_);
  std::error_code ignored;
  fs::remove(path_, ignored);
  return bytes;
}

void removeAbandonedRecordings(AudioFileFactory& files, const fs::path& directory) {
  std::error_code failed;
  for (fs::directory_iterator entry(directory, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code unreadable;
    const bool plainFile = entry->symlink_status(unreadable).type() == fs::file_type::regular;
    if (!plainFile || !isRecordingName(entry->path().filename().string())) continue;
    if (isAbandoned(files, entry->path())) fs::remove(entry->path(), unreadable);
  }
}

namespace {

using Bytes = std::span<const std::byte>;

Bytes bytesOf(const PcmBuffer& buffer) {
  if (const auto* floats = std::get_if<std::span<const float>>(&buffer.samples))
    return std::as_bytes(*floats);
  if (const auto* integers = std::get_if<std::span<const std::int16_t>>(&buffer.samples))
    return std::as_bytes(*integers);
  return {};
}

/// A buffer's header in the ring; its samples follow.
struct Header {
  AudioFormat format;
  std::size_t frames = 0;
  std::size_t bytes = 0;
  std::size_t kind = 0;  ///< The index of the samples' alternative.
};

/// A buffer that owns its samples. Reused, so that it allocates only while buffers grow.
struct OwnBuffer {
  Header header;
  std::vector<float> floats;
  std::vector<std::int16_t> integers;

  /// Room for the samples that the header announces.
  std::span<std::byte> room() {
    if (header.kind == 1) {
      floats.resize(header.bytes / sizeof(float));
      return std::as_writable_bytes(std::span(floats));
    }
    integers.resize(header.bytes / sizeof(std::int16_t));
    return std::as_writable_bytes(std::span(integers));
  }
  [[nodiscard]] PcmBuffer view() const {
    PcmBuffer buffer{.format = header.format, .frames = header.frames, .samples = {}};
    if (header.kind == 1) buffer.samples = std::span<const float>(floats);
    if (header.kind == 2) buffer.samples = std::span<const std::int16_t>(integers);
    return buffer;
  }
};

/// Buffers from one thread to one other, without a lock on either side.
class SoundRing {
 public:
  explicit SoundRing(std::size_t capacity) : bytes_(capacity) {}

  /// False when there is no room. Wakes the reader otherwise. For the writing thread.
  bool push(const PcmBuffer& buffer) {
    const Bytes samples = bytesOf(buffer);
    const Header header{buffer.format, buffer.frames, samples.size(), buffer.samples.index()};
    const std::size_t from = written_.load(std::memory_order_relaxed);
    const std::size_t used = from - read_.load(std::memory_order_acquire);
    if (used + sizeof header + samples.size() > bytes_.size()) return false;
    put(from, std::as_bytes(std::span(&header, 1)));
    put(from + sizeof header, samples);
    written_.store(from + sizeof header + samples.size(), std::memory_order_release);
    wake();
    return true;
  }

  /// The oldest buffer; false when there is none. For the reading thread.
  bool pop(OwnBuffer& into) {
    const std::size_t from = read_.load(std::memory_order_relaxed);
    if (from == written_.load(std::memory_order_acquire)) return false;
    get(from, std::as_writable_bytes(std::span(&into.header, 1)));
    get(from + sizeof(Header), into.room());
    read_.store(from + sizeof(Header) + into.header.bytes, std::memory_order_release);
    return true;
  }

  /// From any thread.
  void wake() {
    signal_.fetch_add(1, std::memory_order_release);
    signal_.notify_one();
  }
  [[nodiscard]] std::uint32_t signal() const { return signal_.load(std::memory_order_acquire); }
  /// Waits for a signal after `seen`.
  void wait(std::uint32_t seen) const { signal_.wait(seen, std::memory_order_acquire); }

 private:
  void put(std::size_t at, Bytes from) {
    const std::size_t start = at % bytes_.size();
    const std::size_t first = std::min(from.size(), bytes_.size() - start);
    if (first > 0) std::memcpy(bytes_.data() + start, from.data(), first);
    if (first < from.size()) std::memcpy(bytes_.data(), from.data() + first, from.size() - first);
  }
  void get(std::size_t at, std::span<std::byte> into) const {
    const std::size_t start = at % bytes_.size();
    const std::size_t first = std::min(into.size(), bytes_.size() - start);
    if (first > 0) std::memcpy(into.data(), bytes_.data() + start, first);
    if (first < into.size()) std::memcpy(into.data() + first, bytes_.data(), into.size() - first);
  }

  std::vector<std::byte> bytes_;
  std::atomic<std::size_t> written_ = 0;  ///< Both only grow; the place is the remainder.
  std::atomic<std::size_t> read_ = 0;
  std::atomic<std::uint32_t> signal_ = 0;
};

std::size_t ringBytes(const AudioFormat& format) {
  constexpr std::size_t kHeaders = std::size_t{16} << 10;
  const double rate = std::clamp(format.sampleRate, double{kMinSampleRate}, double{kMaxSampleRate});
  const auto channels = std::clamp<std::uint32_t>(format.channels, 1, kMaxSoundChannels);
  const double frames = rate * kCaptureRingSeconds;
  return static_cast<std::size_t>(frames) * channels * sizeof(float) + kHeaders;
}

template <class Step>
void ignoringFailure(Step step) {
  try {
    step();
  } catch (const std::exception&) {
    // The other end of the path keeps working.
  }
}

}  // namespace

struct SoundPath::Shared {
  Shared(const AudioFormat& format, Ends theEnds)
      : ring(ringBytes(format)), ends(std::move(theEnds)) {}

  /// On the audio thread.
  void take(const PcmBuffer& buffer) {
    if (buffer.frames == 0 || closed.load(std::memory_order_relaxed)) return;
    const Seconds now = ends.time->now();
    if (voice.hears(level(buffer), now)) lastVoiceAt.store(now.count(), std::memory_order_relaxed);
    frames.fetch_add(buffer.frames, std::memory_order_relaxed);
    if (!ring.push(buffer)) lostBuffers.fetch_add(1, std::memory_order_relaxed);
  }

  /// On the consumer's thread, until the path is closed and the ring is empty.
  void consume() {
    OwnBuffer buffer;
    for (;;) {
      const std::uint32_t seen = ring.signal();
      const bool isLast = closed.load(std::memory_order_acquire);
      while (!dropped.load(std::memory_order_relaxed) && ring.pop(buffer)) pass(buffer.view());
      if (isLast) break;
      ring.wait(seen);
    }
    drained.set_value();
  }

  void pass(const PcmBuffer& buffer) {
    ignoringFailure([&] { ends.task->append(buffer); });
    // Recognition goes on without the recording.
    ignoringFailure([&] { ends.file->write(buffer); });
  }

  void close() {
    closed.store(true, std::memory_order_release);
    ring.wake();
  }

  SoundRing ring;
  Ends ends;
  VoiceDetector voice;  ///< The audio thread's.
  std::atomic<double> lastVoiceAt = -std::numeric_limits<double>::infinity();
  std::atomic<std::size_t> frames = 0;
  std::atomic<std::size_t> lostBuffers = 0;
  std::atomic<bool> closed = false;
  std::atomic<bool> dropped = false;
  std::promise<void> drained;
  std::future<void> drain = drained.get_future();
};

SoundPath::SoundPath(const AudioFormat& format, Ends ends)
    : shared_(std::make_shared<Shared>(format, std::move(ends))) {
  consumer_.startOnce([shared = shared_] { shared->consume(); });
}

SoundPath::~SoundPath() {
  shared_->dropped = true;
  shared_->close();
}

AudioEngine::Tap SoundPath::tap() const {
  return [shared = shared_](const PcmBuffer& buffer) { shared->take(buffer); };
}

bool SoundPath::drain(Seconds limit) {
  shared_->close();
  return shared_->drain.wait_for(limit) == std::future_status::ready;
}

Seconds SoundPath::lastVoiceAt() const { return Seconds{shared_->lastVoiceAt.load()}; }
std::size_t SoundPath::frames() const { return shared_->frames.load(); }
std::size_t SoundPath::lostBuffers() const { return shared_->lostBuffers.load(); }

}  // namespace zelvora
