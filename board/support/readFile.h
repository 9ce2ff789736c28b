#pragma once

#include <filesystem>
#include <string>

namespace support {

/// The whole content of a file. Throws std::system_error.
std::string readFile(const std::filesystem::path& file);

}  // namespace support
