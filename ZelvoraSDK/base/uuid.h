#pragma once

#include <string>

namespace zelvora {

/// A new random UUID, as in "3F2504E0-4F89-41D3-9A0C-0305E82C3301". Callable from any thread.
[[nodiscard]] std::string randomUuid();

}  // namespace zelvora
