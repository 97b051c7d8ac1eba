#pragma once

#include <exception>
#include <map>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// A capture's share in an audio session that several engines may use at once. The session is
/// active while there is a share. Making and releasing one calls the session, on the caller's
/// thread, one caller at a time.
class SessionShare {
 public:
  /// Configures the session for listening and activates it. Throws Error when the system refuses;
  /// nothing is held then.
  explicit SessionShare(std::shared_ptr<AudioSession> session)
      : session_(std::move(session)), count_(countOf(*session_)) {
    count_->with([this](int& shares) {
      session_->configure(AudioSession::Category::playAndRecord, AudioSession::Mode::voiceChat,
                          AudioSession::kDuckOthers | AudioSession::kDefaultToSpeaker);
      session_->setActive(true);
      ++shares;
    });
  }
  ~SessionShare() {
    count_->with([this](int& shares) {
      if (--shares == 0) deactivate();
    });
  }

  SessionShare(const SessionShare&) = delete;
  SessionShare& operator=(const SessionShare&) = delete;

 private:
  using Count = Guarded<int>;

  /// The count belongs to the session, whoever made the platforms that it is part of.
  static std::shared_ptr<Count> countOf(const AudioSession& session) {
    using Counts = Guarded<std::map<const AudioSession*, std::weak_ptr<Count>>>;
    static auto* const counts = new Counts;  // never destroyed: engines may end at exit
    return counts->with([&](auto& all) {
      std::erase_if(all, [](const auto& entry) { return entry.second.expired(); });
      std::weak_ptr<Count>& held = all[&session];
      auto count = held.lock();
      if (!count) held = count = std::make_shared<Count>();
      return count;
    });
  }

  void deactivate() {
    try {
      session_->setActive(false);
    } catch (const std::exception&) {
      // The capture is over either way.
    }
  }

  std::shared_ptr<AudioSession> session_;
  std::shared_ptr<Count> count_;
};

}  // namespace zelvora
