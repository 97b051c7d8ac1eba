#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "destination.h"

namespace zelvora::serve {

/// The answer of /api/semanticCatalog/resolve: the best item when it is clear, else the intent
/// "none" with the best items as choices. The request names no locale, so words are stemmed as
/// English ones; Hebrew ones have no stem and are not harmed.
std::string catalogueAnswer(const std::vector<Destination>& items, std::string_view query);

}  // namespace zelvora::serve
