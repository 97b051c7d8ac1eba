#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// Every bound on what comes from outside: files, servers, devices, the terminal. Each is applied
/// before the bytes are in memory and allows the value itself. docs/limits.md lists them.
namespace zelvora {

// JSON: specs and answers of the backend.

/// Bytes of one document, byte-order mark included. A spec of 10,000 tasks has 5 MB.
inline constexpr std::size_t kMaxJsonBytes = std::size_t{128} << 20;
/// Arrays and objects within each other: readers recurse, and a phone's threads have small stacks.
inline constexpr std::size_t kMaxJsonDepth = 512;

// Utterances: the façade takes any text, in memory of at most 8 times its size as UTF-8.

/// Bytes of an utterance that is tried in other words as well. Nobody says or types that much, and
/// each wording takes as much memory again.
inline constexpr std::size_t kMaxRephrasedBytes = std::size_t{64} << 10;

// Files that are read whole.

/// Bytes of one file: as large as the largest document.
inline constexpr std::size_t kMaxFileBytes = kMaxJsonBytes;

// HTTPS: what the backend answers.

/// Bytes of one response, body and what the transport counts with it. A parsed tree takes about 27
/// times as much, and an answer that the semantic cache keeps stays there.
inline constexpr std::size_t kMaxResponseBytes = std::size_t{1} << 20;
/// Transfers under way at once in one session; further ones wait for their turn.
inline constexpr std::size_t kMaxActiveTransfers = 32;
/// Connections' handles kept for later; each holds some 30 kB.
inline constexpr std::size_t kMaxIdleHandles = 16;

// Property lists.

/// Bytes of one file. Settings of an application take a few kilobytes.
inline constexpr std::size_t kMaxPropertyListBytes = std::size_t{1} << 20;
/// Arrays and dictionaries within each other: the library behind it recurses.
inline constexpr std::size_t kMaxPropertyListDepth = 64;
/// Bytes that a binary list may unfold to: its objects can refer to each other again and again.
inline constexpr std::size_t kMaxUnfoldedPropertyListBytes = 16 * kMaxPropertyListBytes;

// The end of a process or of a platform.

/// What is waited for picks that were accepted and not stored yet.
inline constexpr std::chrono::seconds kMaxDrainTime{1};
/// What is waited for a thread that is busy; it is left alone then.
inline constexpr std::chrono::seconds kMaxJoinTime{1};

// Sound: files, recordings and devices.

/// Frames a second. Telephones have 8,000; no microphone has more than 192,000.
inline constexpr std::uint32_t kMinSampleRate = 8'000;
inline constexpr std::uint32_t kMaxSampleRate = 192'000;
/// Channels of a file, and the most that are asked of a device.
inline constexpr std::uint32_t kMaxSoundChannels = 8;
/// Of one sound file. A command takes seconds.
inline constexpr std::chrono::minutes kMaxSoundLength{10};

/// Whether sound of this format is taken from a file or a device.
constexpr bool isSupportedSound(double sampleRate, std::uint32_t channels) {
  return sampleRate >= kMinSampleRate && sampleRate <= kMaxSampleRate && channels >= 1 &&
         channels <= kMaxSoundChannels;
}

/// Sound that waits in a capture's ring to be stored and recognised. What comes while the
/// ring is full is dropped and counted.
inline constexpr double kCaptureRingSeconds = 2.0;

// Speech recognition.

/// Words of all phrases that a recogniser expects; a large application has a few thousand. Further
/// phrases are understood as any other English.
inline constexpr std::size_t kMaxVocabularyWords = 30'000;

// Speech output: the speech daemon.

/// Bytes of one line of a reply; real ones have fewer than a hundred.
inline constexpr std::size_t kMaxSpeechReplyLineBytes = 4096;
/// Lines of one reply before its last; the replies that are asked for have at most one.
inline constexpr std::size_t kMaxSpeechReplyLines = 256;
/// Bytes of a language code; BCP 47 asks for room for 35.
inline constexpr std::size_t kMaxLanguageCodeBytes = 35;
/// For the daemon to start, which takes half a second.
inline constexpr std::chrono::seconds kMaxSpeechStart{5};
/// For the last command to reach a daemon that has stopped reading.
inline constexpr std::chrono::milliseconds kMaxSpeechFarewell{500};
/// For a synthesiser's destructor.
inline constexpr std::chrono::seconds kMaxSpeechClose{1};

}  // namespace zelvora
