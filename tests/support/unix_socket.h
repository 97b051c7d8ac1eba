#pragma once

#include <filesystem>

#include <tests/support/subprocess.h>

namespace zelvora::testing {

/// Returns when `daemon` listens on `socket`; throws when it ends or does not within half a minute.
void awaitListening(Subprocess& daemon, const std::filesystem::path& socket);

/// A new folder that daemons accept: nobody else may look into it.
std::filesystem::path privateFolder(const std::filesystem::path& path);

}  // namespace zelvora::testing
