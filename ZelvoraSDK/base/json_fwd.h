#pragma once

namespace zelvora {

// For headers that only declare the hooks `readJson` and `writeJson` of their records.
class JsonCursor;
class JsonWriter;

}  // namespace zelvora
