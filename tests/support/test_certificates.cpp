#include <tests/support/test_certificates.h>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace zelvora::test {
namespace {

template <auto free>
struct FreeWith {
  template <class T>
  void operator()(T* pointer) const {
    free(pointer);
  }
};

using Key = std::unique_ptr<EVP_PKEY, FreeWith<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, FreeWith<X509_free>>;
using Buffer = std::unique_ptr<BIO, FreeWith<BIO_free_all>>;

constexpr long kDay = 24L * 60 * 60;

void check(bool done) {
  if (!done) throw std::runtime_error("could not make a test certificate");
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
  check(extension != nullptr);
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

/// Unsigned, valid from `begin` to `end` seconds from now.
Certificate draft(EVP_PKEY* key, const std::string& name, long serial, long begin, long end) {
  Certificate certificate(X509_new());
  check(certificate != nullptr);
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), begin);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), end);
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                             reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
  X509_set_pubkey(certificate.get(), key);
  return certificate;
}

std::string contents(BIO* buffer) {
  char* bytes = nullptr;
  const long length = BIO_get_mem_data(buffer, &bytes);
  return std::string(bytes, static_cast<std::size_t>(length));
}

std::string toPem(X509* certificate) {
  const Buffer buffer(BIO_new(BIO_s_mem()));
  check(PEM_write_bio_X509(buffer.get(), certificate) == 1);
  return contents(buffer.get());
}

std::string toPem(EVP_PKEY* key) {
  const Buffer buffer(BIO_new(BIO_s_mem()));
  check(PEM_write_bio_PrivateKey(buffer.get(), key, nullptr, nullptr, 0, nullptr, nullptr) == 1);
  return contents(buffer.get());
}

std::filesystem::path newFile() {
  std::string name = (std::filesystem::temp_directory_path() / "zelvora-test-XXXXXX").string();
  const int descriptor = mkstemp(name.data());
  check(descriptor >= 0);
  close(descriptor);
  return name;
}

}  // namespace

struct TestAuthority::Keys {
  explicit Keys(const std::string& name)
      : key(EVP_EC_gen("P-256")), certificate(draft(key.get(), name, 1, -kDay, kDay)) {}

  Key key;
  Certificate certificate;
};

// Two authorities with one name would look like one with a broken signature, so each is named after
// its file.
TestAuthority::TestAuthority() : file_(newFile()) {
  keys_ = std::make_unique<Keys>("Authority " + file_.filename().string());
  X509* const own = keys_->certificate.get();
  X509_set_issuer_name(own, X509_get_subject_name(own));
  addExtension(own, own, NID_basic_constraints, "critical,CA:TRUE");
  check(X509_sign(own, keys_->key.get(), EVP_sha256()) > 0);
  std::ofstream(file_) << toPem(own);
}

TestAuthority::~TestAuthority() {
  std::error_code ignored;
  std::filesystem::remove(file_, ignored);
}

TestCertificate TestAuthority::issue(const std::string& host, Validity validity) const {
  const bool expired = validity == Validity::expired;
  const bool address = host[0] >= '0' && host[0] <= '9';
  const Key key(EVP_EC_gen("P-256"));
  const Certificate certificate =
      draft(key.get(), host, 2, expired ? -2 * kDay : -kDay, expired ? -kDay : kDay);
  X509* const issuer = keys_->certificate.get();
  X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer));
  addExtension(certificate.get(), issuer, NID_subject_alt_name, (address ? "IP:" : "DNS:") + host);
  check(X509_sign(certificate.get(), keys_->key.get(), EVP_sha256()) > 0);
  return {toPem(key.get()), toPem(certificate.get())};
}

}  // namespace zelvora::test
