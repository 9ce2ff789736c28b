#pragma once

#include <filesystem>

namespace support {

/// Renames a damaged file, and what SQLite keeps beside a database, to `<name>.damaged-<UTC time>`,
/// so that a new one can be made and nothing is lost. Overwrites nothing; the write-ahead log of a
/// database stays the log of the renamed file. Returns the new name. Throws std::system_error.
std::filesystem::path setAside(const std::filesystem::path& file);

}  // namespace support
