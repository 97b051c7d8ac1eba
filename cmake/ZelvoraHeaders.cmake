# What an application or the writer of a port includes, besides the adapters and the views. `cmake --install`
# installs these headers, they stay stable (docs/versions.md), and each compiles alone. All other headers are
# private to this tree.
set(zelvora_public_headers
  platform.h zelvora.h
  async/awaitable_fwd.h async/callbacks.h async/executors.h
  base/error.h base/json_fwd.h base/json_write.h base/library.h base/limits.h base/ordered_map.h
  base/record.h
  facade/settings.h facade/voice_command.h
  outcome/result.h
  platform/audio.h platform/network.h platform/speech.h platform/system.h
  spec/json_value.h spec/runtime_spec.h spec/stored_spec.h spec/task_spec.h
  speech/stt_config.h speech/voice_speaker.h
  workbench/lint.h)
