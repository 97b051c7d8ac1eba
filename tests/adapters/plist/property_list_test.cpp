#include <ZelvoraSDK/adapters/plist/plist_bundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/plain_number.h>

namespace zelvora {
namespace {

using ::testing::HasSubstr;

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

std::string xmlList(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//X//DTD PLIST 1.0//EN\" \"http://x/y.dtd\">\n"
         "<plist version=\"1.0\"><dict>" +
         entries + "</dict></plist>\n";
}

std::string toBinary(const std::string& xml) {
  const testing::PlainNumbers plainNumbers;  // libplist follows the locale
  plist_t root = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string binary(bytes, length);
  std::free(bytes);
  plist_free(root);
  return binary;
}

/// A binary list of `objects`, the first of them its root, with references of one byte.
std::string binaryList(const std::vector<std::string>& objects) {
  std::string list = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += static_cast<char>(list.size() >> 8);
    table += static_cast<char>(list.size());
    list += object;
  }
  const std::size_t tableStart = list.size();
  const auto number = [](std::size_t value) {
    std::string bytes(8, '\0');
    for (int i = 7; i >= 0; --i, value >>= 8)
      bytes[static_cast<std::size_t>(i)] = static_cast<char>(value);
    return bytes;
  };
  return list + table + std::string(6, '\0') + "\x02\x01" + number(objects.size()) + number(0) +
         number(tableStart);
}

/// Lists within lists, each of which refers to the next one `width` times.
std::string nestedBinary(std::size_t depth, std::size_t width) {
  std::vector<std::string> objects = {std::string("\xD1\x01\x02", 3), "\x51k"};
  for (std::size_t i = 1; i < depth; ++i)
    objects.push_back(static_cast<char>(0xA0 + width) +
                      std::string(width, static_cast<char>(objects.size() + 1)));
  objects.push_back("\x51v");
  return binaryList(objects);
}

/// A list that refers to the same data of `size` bytes 255 times.
std::string listOfTheSame(std::size_t size) {
  std::string data = "\x4F\x12";
  for (const int shift : {24, 16, 8, 0}) data += static_cast<char>(size >> shift);
  data += std::string(size, 'd');
  return binaryList(
      {std::string("\xD1\x01\x02", 3), "\x51k", "\xAF\x10\xFF" + std::string(255, '\x03'), data});
}

std::string failureOf(const std::string& bytes) {
  try {
    readPropertyList(bytes);
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), "PropertyList");
    return error.description();
  }
  return "was read";
}

TEST(PropertyList, ReadsStringsAndNumbersOfBothForms) {
  const std::string xml = xmlList(
      "<key>s</key><string>a &lt;b&gt; <![CDATA[</dict>]]></string>"
      "<key>&amp;</key><string>שלום</string>"
      "<key>empty</key><string/>"
      "<!-- </dict> <array> -->"
      "<key>one</key><integer>1</integer>"
      "<key>negative</key><integer>-5</integer>"
      "<key>large</key><integer>18446744073709551611</integer>"
      "<key>real</key><real>0.65</real>"
      "<key>yes</key><true/><key>no</key><false/>"
      "<key>data</key><data>AAEC</data>"
      "<key>date</key><date>2020-01-02T03:04:05Z</date>"
      "<key>list</key><array><string>x</string><dict><key>k</key><integer>2</integer></dict></"
      "array>"
      "<key>dictionary</key><dict><key>s</key><string>inner</string></dict>");
  const PropertyListEntries expected{
      .strings = {{"s", "a <b> </dict>"}, {"&", "שלום"}, {"empty", ""}},
      .numbers = {{"one", 1}, {"negative", -5}, {"large", 18446744073709551611.0}, {"real", 0.65}}};
  EXPECT_EQ(readPropertyList(xml), expected);
  EXPECT_EQ(readPropertyList("\xEF\xBB\xBF" + xml), expected);
  EXPECT_EQ(readPropertyList(toBinary(xml)), expected);
}

TEST(PropertyList, RepairsTextThatIsNotUtf8) {
  EXPECT_EQ(readPropertyList(xmlList("<key>k</key><string>a\xFF</string>")).strings,
            (std::map<std::string, std::string>{{"k", "a\uFFFD"}}));
}

TEST(PropertyList, RefusesWhatIsMalformed) {
  const struct {
    std::string bytes;
    const char* failure;
  } rows[] = {
      {"", "malformed"},
      {"{\"json\": 1}", "malformed"},
      {std::string("\0\0", 2), "neither XML nor a binary list"},
      {"<plist><dict>", "<dict> is never closed"},
      {"<plist><dict></array></plist>", "</array> closes nothing"},
      {"<plist><dict", "a tag has no end"},
      {"<plist><!-- x <dict/></plist>", "<!-- has no end"},
      {"<plist><!--><dict><dict>--></plist>", "ends where it begins"},
      {"<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><dict/></plist>", "a tag has no end"},
      {"<!ELEMENT x><plist><dict/></plist>", "declarations other than"},
      {"<plist><dict><key>&#0;</key><true/></dict></plist>", "names no character"},
      {"<plist><dict><key>&#xx;</key><true/></dict></plist>", "names no character"},
      {"<plist><dict><key>&#x110000;</key><true/></dict></plist>", "names no character"},
      {"<plist><array/></plist>", "the top is no dictionary"},
      {"<plist><dict><string>no key</string></dict></plist>", "malformed"},
      {"bplist00", "malformed binary list"},
      {"bplist00" + std::string(60, '\xFF'), "malformed binary list"},
      {binaryList({"\xA1\x01", "\x51v"}), "malformed binary list"},  // an array
      {binaryList({std::string("\xD1\x01\x07", 3), "\x51k"}), "malformed binary list"},
      {binaryList({std::string("\xD1\x01\x01", 3), "\x08"}), "malformed binary list"},  // its key
      {binaryList({std::string("\xD1\x01\x01", 3), std::string("\x52k\0", 3)}),
       "malformed binary list"},
      {binaryList({"\xD9\x01\x02"}), "malformed binary list"},
      {binaryList({std::string("\xD1\x01\x01", 3), "\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
       "malformed binary list"},
  };
  for (const auto& row : rows)
    EXPECT_THAT(failureOf(row.bytes), HasSubstr(row.failure)) << row.bytes;
}

TEST(PropertyList, EnforcesItsLimits) {
  const auto nestedXml = [](std::size_t depth) {
    return xmlList("<key>k</key>" + repeated("<array>", depth - 1) + "<true/>" +
                   repeated("</array>", depth - 1));
  };
  EXPECT_EQ(failureOf(nestedXml(kMaxPropertyListDepth)), "was read");
  EXPECT_THAT(failureOf(nestedXml(kMaxPropertyListDepth + 1)), HasSubstr("levels of nesting"));
  EXPECT_THAT(failureOf(nestedXml(100'000 / 2)), HasSubstr("levels of nesting"));

  EXPECT_EQ(failureOf(nestedBinary(kMaxPropertyListDepth, 1)), "was read");
  EXPECT_THAT(failureOf(nestedBinary(kMaxPropertyListDepth + 1, 1)),
              HasSubstr("levels of nesting"));
  EXPECT_THAT(failureOf(nestedBinary(30, 10)), HasSubstr("unfolds to too much"));
  // Each object counts its bytes plus a few more, whatever its kind.
  const std::size_t share = kMaxUnfoldedPropertyListBytes / 255;
  EXPECT_EQ(failureOf(listOfTheSame(share - 70)), "was read");
  EXPECT_THAT(failureOf(listOfTheSame(share - 50)), HasSubstr("unfolds to too much"));
  const std::string itself = binaryList({std::string("\xD1\x01\x02", 3), "\x51k", "\xA1\x02"});
  EXPECT_THAT(failureOf(itself), HasSubstr("levels of nesting"));

  const std::string large =
      xmlList("<key>k</key><string>" + std::string(kMaxPropertyListBytes, 'x') + "</string>");
  EXPECT_THAT(failureOf(large), HasSubstr("larger than 1048576 bytes"));
}

TEST(PropertyList, SurvivesEveryCutAndEveryChangedByte) {
  const std::string xml = xmlList("<key>k</key><string>v</string><key>n</key><real>1.5</real>");
  for (const std::string& list : {xml, toBinary(xml)}) {
    for (std::size_t at = 0; at < list.size(); ++at) {
      failureOf(list.substr(0, at));
      for (const char byte : {'\0', '\xFF', '<', '\x7F'}) {
        std::string changed = list;
        changed[at] = byte;
        failureOf(changed);
      }
    }
  }
}

}  // namespace
}  // namespace zelvora
