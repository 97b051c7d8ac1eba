#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelvora::testing {

/// Voices that people understand without effort.
enum class Voice { slt, rms, kal16 };

/// `text` read aloud at 16 kHz, one channel, with a little silence around it. Always the same.
std::vector<std::int16_t> spoken(const std::string& text, Voice voice = Voice::slt);

}  // namespace zelvora::testing
