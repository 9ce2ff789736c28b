#pragma once

#include <filesystem>
#include <string>

namespace board {

/// The content of a file of the state directory. Throws std::system_error.
std::string readStateFile(const std::filesystem::path& file);

/// Renames a damaged file to `<name>.damaged-<UTC time>`, which overwrites nothing. Returns the new
/// name. Throws std::system_error.
std::filesystem::path setStateFileAside(const std::filesystem::path& file);

}  // namespace board
