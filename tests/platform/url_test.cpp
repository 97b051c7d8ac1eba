#include <ZelvoraSDK/platform/network.h>

#include <gtest/gtest.h>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

/// 0 when `text` is allowed, else the code of the refusal.
int refusalOf(const char* text) {
  try {
    requireSecure(parseUrl(text));
    return 0;
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), kUrlErrorDomain);
    return error.code();
  }
}

TEST(Url, IsHttpsOrStaysOnThisMachine) {
  const struct {
    const char* text;
    int refusal;
  } rows[] = {
      {"https://api.example.com", 0},
      {"HTTPS://API.example.com:8443/v1?k=v#part", 0},
      {"https://[2001:db8::1]/", 0},
      {"http://localhost", 0},
      {"http://LocalHost:8080/x", 0},
      {"http://127.0.0.1:1", 0},
      {"http://127.255.0.9/", 0},
      {"http://[::1]:80", 0},
      {"http://api.example.com", kUrlInsecure},
      {"http://localhost.example.com", kUrlInsecure},
      {"http://127.0.0.1.example.com", kUrlInsecure},
      {"http://127.1", kUrlInsecure},
      {"http://0127.0.0.1", kUrlInsecure},
      {"http://127.0.0.256", kUrlInsecure},
      {"http://127.0.0.1.", kUrlInsecure},
      {"http://128.0.0.1", kUrlInsecure},
      {"http://10.0.0.1", kUrlInsecure},
      {"http://[::2]", kUrlInsecure},
      {"http://localhost@example.com", kUrlMalformed},
      {"http://127.0.0.1\\@example.com", kUrlMalformed},
      {"http://example.com\r\nHost: localhost", kUrlMalformed},
      {"http://[::1", kUrlMalformed},
      {"http://[::1]example.com", kUrlMalformed},
      {"http://[]", kUrlMalformed},
      {"https://", kUrlMalformed},
      {"https:///path", kUrlMalformed},
      {"https://host:", kUrlMalformed},
      {"https://host:0", kUrlMalformed},
      {"https://host:65536", kUrlMalformed},
      {"https://host:80:80", kUrlMalformed},
      {"https://exa mple.com", kUrlMalformed},
      {"https://b\xC3\xBC"
       "cher.example",
       0},
      {"https://b\xB5.example", kUrlMalformed},
      {"https://api.example.com/\xFF", kUrlMalformed},
      {"ftp://example.com", kUrlMalformed},
      {"file:///etc/passwd", kUrlMalformed},
      {"api.example.com", kUrlMalformed},
      {"", kUrlMalformed},
  };
  for (const auto& row : rows) EXPECT_EQ(refusalOf(row.text), row.refusal) << row.text;
}

TEST(Url, JoinsAPathWithOneSlash) {
  const struct {
    const char* base;
    const char* component;
    const char* expected;
  } rows[] = {
      {"https://host", "/api/stt", "https://host/api/stt"},
      {"https://host/", "/api/stt", "https://host/api/stt"},
      {"https://Host:8443/v1//", "api/stt", "https://host:8443/v1/api/stt"},
      {"https://host/v1?tenant=a#part", "/api/stt", "https://host/v1/api/stt?tenant=a"},
      {"http://[::1]:80", "/api/stt", "http://[::1]:80/api/stt"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(toString(appendingPath(parseUrl(row.base), row.component)), row.expected) << row.base;
}

TEST(Url, KeepsASettingThatCannotBeUsedAndRefusesItLater) {
  for (const char* text : {"ftp://example.com", "file:///etc/passwd", "mailto:a@b", "localhost:80",
                           "https://user@example.com", "https://host:0", "https://", "a:"}) {
    const auto kept = readUrl(text);
    ASSERT_TRUE(kept) << text;
    EXPECT_THROW(requireSecure(*kept), Error) << text;
  }
  for (const char* text : {"", "api.example.com", "/path", "://host", "1a://host", "ht tp://host",
                           "https://exa mple.com"})
    EXPECT_FALSE(readUrl(text)) << text;
  EXPECT_EQ(readUrl("HTTPS://Host/x"), parseUrl("https://host/x"));
  EXPECT_THROW(requireSecure(*readUrl("http://example.com")), Error);
}

}  // namespace
}  // namespace zelvora
