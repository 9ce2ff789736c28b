#pragma once

#include <filesystem>

namespace host {

/// Makes sure that a directory exists and that files can be created in it. Throws StartFailure.
void checkStateDirectory(const std::filesystem::path& directory);

}  // namespace host
