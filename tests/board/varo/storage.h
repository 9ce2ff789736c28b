#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace varotest {

/// Runs SQL on a file as a person at the sqlite3 shell would; returns the values of all result
/// rows, columns joined by "|" and rows by "\n". Throws std::runtime_error.
std::string sql(const std::filesystem::path& file, const std::string& statements);

/// Mounts an empty file system that holds this many bytes. To be called in own mounts.
void mountTmpfs(const std::filesystem::path& directory, std::size_t bytes);
/// Puts a file where another one is, as container engines do. To be called in own mounts.
void bindMount(const std::filesystem::path& source, const std::filesystem::path& target);
void remountReadOnly(const std::filesystem::path& directory);

}  // namespace varotest
