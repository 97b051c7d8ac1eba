#include <tests/support/synthetic_voice.h>

#include <flite/flite.h>

#include <cstdlib>
#include <memory>

// The library exports these but declares them nowhere.
extern "C" {
cst_voice* register_cmu_us_slt(const char* folder);
cst_voice* register_cmu_us_rms(const char* folder);
cst_voice* register_cmu_us_kal16(const char* folder);
}

namespace zelvora::testing {
namespace {

constexpr int kRate = 16000;
constexpr std::size_t kPause = kRate / 4;

cst_voice* voiceOf(Voice voice) {
  static cst_voice* const slt = (flite_init(), register_cmu_us_slt(nullptr));
  static cst_voice* const rms = register_cmu_us_rms(nullptr);
  static cst_voice* const kal16 = register_cmu_us_kal16(nullptr);
  switch (voice) {
    case Voice::slt: return slt;
    case Voice::rms: return rms;
    case Voice::kal16: return kal16;
  }
  std::abort();
}

struct DeleteWave {
  void operator()(cst_wave* wave) const { delete_wave(wave); }
};

}  // namespace

std::vector<std::int16_t> spoken(const std::string& text, Voice voice) {
  // The voices take their breath noise from the process's random generator.
  std::srand(1);
  const std::unique_ptr<cst_wave, DeleteWave> wave(
      flite_text_to_wave(text.c_str(), voiceOf(voice)));
  if (!wave || wave->sample_rate != kRate) std::abort();
  std::vector<std::int16_t> samples(kPause);
  samples.insert(samples.end(), wave->samples, wave->samples + wave->num_samples);
  samples.resize(samples.size() + kPause);
  return samples;
}

}  // namespace zelvora::testing
