#pragma once

#include <string>
#include <string_view>

#include <ZelvoraSDK/base/ordered_map.h>

namespace zelvora {

/// `text` with every word that equals a key of `table`, whatever their case, replaced by that key's
/// value; the first fitting entry counts. Words are split at the space alone and joined by single
/// spaces, so a key of several words never fits.
std::string withReplacements(std::string_view text, const OrderedMap<std::string>& table);

}  // namespace zelvora
