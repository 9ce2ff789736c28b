#pragma once

#include <filesystem>
#include <string>

namespace board {

/// The whole content of a file. Throws std::system_error.
std::string readFile(const std::filesystem::path& file);

}  // namespace board
