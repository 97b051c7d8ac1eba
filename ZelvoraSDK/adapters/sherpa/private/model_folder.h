#pragma once

#include <filesystem>
#include <string>

namespace zelvora::sherpa {

/// The files of a streaming transducer.
struct ModelFiles {
  std::string encoder;
  std::string decoder;
  std::string joiner;
  std::string tokens;
  std::string bpeVocabulary;  ///< Empty when the folder has none.
};

/// Looks at the files without loading them. Throws Error that says which one is missing, empty or
/// not of a streaming transducer.
[[nodiscard]] ModelFiles modelFilesIn(const std::filesystem::path& folder);

/// Has another process decode a second of silence with the model, because the library ends the
/// process that loads a bad one. Throws Error with the reason.
void tryModel(const std::filesystem::path& folder);

}  // namespace zelvora::sherpa
