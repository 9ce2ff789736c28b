#pragma once

#include <filesystem>
#include <string>

namespace board {

/// Replaces the content of a file so that after a crash or a loss of power the file holds either
/// the old content or the new: a temporary file beside it, named `<name>.new`, is written,
/// synchronised, and renamed. Throws std::system_error; the file is then unchanged.
void replaceFile(const std::filesystem::path& file, const std::string& content);

}  // namespace board
