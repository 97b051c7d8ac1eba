#pragma once

#include <filesystem>

#include "shop_application.h"

namespace zelvora::shop {

/// Walks through the shop by typed commands and paints what is seen on the way to PNG files in
/// `folder`, which it creates. Throws Error when a command leads nowhere.
void paintTour(ShopApplication& application, const std::filesystem::path& folder);

}  // namespace zelvora::shop
