#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace zelvora {

/// The words of an example that earn nothing. A spec's own stopword lists do not reach the router.
/// One word stands here twice.
inline constexpr std::array<std::string_view, 28> kDefaultStopwords = {
    "אני",  "אתה",   "את",    "הוא",   "היא", "אנחנו", "הם",   "הן",  "צריך", "צריכה",
    "רוצה", "רוצים", "רוצות", "ראיתי", "יש",  "ב",     "על",   "של",  "את",   "זה",
    "זו",   "ברחוב", "בבית",  "בהמשך", "פה",  "שם",    "היום", "מחר",
};

/// Whether the router passes over `token`, which must match a stopword exactly.
constexpr bool isStopword(std::string_view token) {
  return std::ranges::find(kDefaultStopwords, token) != kDefaultStopwords.end();
}

}  // namespace zelvora
