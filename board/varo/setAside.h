#pragma once

#include <filesystem>

namespace varo {

/// Renames a store's file, and what SQLite keeps beside it, to `<name>.damaged-<UTC time>`, so that
/// a new one can be made and nothing is lost. The write-ahead log stays the log of the renamed
/// file. Returns the new name. Throws std::system_error.
std::filesystem::path setAside(const std::filesystem::path& file);

}  // namespace varo
