#include <ZelvoraSDK/speech/multipart.h>

#include <utility>

namespace zelvora {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

}  // namespace

MultipartForm::MultipartForm(std::string boundary) : boundary_(std::move(boundary)) {}

void MultipartForm::openPart(std::string_view disposition) {
  body_.append("--").append(boundary_).append(kLineEnd);
  body_.append("Content-Disposition: form-data; ").append(disposition).append(kLineEnd);
}

void MultipartForm::addField(std::string_view name, std::string_view value) {
  openPart("name=" + quoted(name));
  body_.append(kLineEnd).append(value).append(kLineEnd);
}

void MultipartForm::addFile(const File& file) {
  openPart("name=" + quoted(file.name) + "; filename=" + quoted(file.fileName));
  body_.append("Content-Type: ").append(file.contentType).append(kLineEnd).append(kLineEnd);
  body_.append(reinterpret_cast<const char*>(file.content.data()), file.content.size());
  body_.append(kLineEnd);
}

std::string MultipartForm::contentType() const {
  return "multipart/form-data; boundary=" + boundary_;
}

std::string MultipartForm::finish() {
  body_.append("--").append(boundary_).append("--").append(kLineEnd);
  return std::move(body_);
}

}  // namespace zelvora
