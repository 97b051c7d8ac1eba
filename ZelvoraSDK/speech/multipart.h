#pragma once

#include <string>
#include <string_view>

#include <ZelvoraSDK/speech/stt_protocols.h>

namespace zelvora {

/// Builds the body of a multipart/form-data upload, part by part, in the order of the calls.
class MultipartForm {
 public:
  /// REQUIRES: `boundary` occurs in none of the parts.
  explicit MultipartForm(std::string boundary);

  /// A part that is a line of text; written as it is, also when empty.
  void addField(std::string_view name, std::string_view value);

  struct File {
    std::string_view name;  ///< Of the form's part.
    std::string_view fileName;
    std::string_view contentType;
    const AudioData& content;  ///< Written byte for byte.
  };
  void addFile(const File& file);

  [[nodiscard]] std::string contentType() const;

  /// Closes the form and hands it over; nothing may be added after that.
  [[nodiscard]] std::string finish();

 private:
  void openPart(std::string_view disposition);

  std::string boundary_;
  std::string body_;
};

}  // namespace zelvora
