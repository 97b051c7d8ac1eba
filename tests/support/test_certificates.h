#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace zelvora::test {

/// A key and its certificate, both PEM.
struct TestCertificate {
  std::string key;
  std::string certificate;
};

/// A certificate authority that lives as long as the test.
class TestAuthority {
 public:
  TestAuthority();
  ~TestAuthority();

  enum class Validity { now, expired };

  /// A server certificate for the DNS name or IPv4 address `host`.
  [[nodiscard]] TestCertificate issue(const std::string& host,
                                      Validity validity = Validity::now) const;

  /// A file with the authority's own certificate, to be trusted. Deleted with this object.
  [[nodiscard]] const std::filesystem::path& file() const { return file_; }

 private:
  struct Keys;

  std::unique_ptr<Keys> keys_;
  std::filesystem::path file_;
};

}  // namespace zelvora::test
