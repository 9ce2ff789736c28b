#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// The whole content of a file. Throws std::system_error.
std::string readFile(const std::filesystem::path& file);

/// What to do where a file cannot take the place of another one: something is mounted on it, or its
/// directory may not be written.
enum class Irreplaceable {
    fail,
    writeInPlace,  ///< readers, and a loss of power, may then find a part of the new content
};

/// Makes the content that of the file, mode 0644, on the disk. Readers find the old content or the
/// new one, never a part of it, and so does who looks after a crash or a loss of power: a new file,
/// `<name>.new`, takes the name of the old one. A symbolic link stays, its target is replaced.
/// Nothing is written when nothing changes.
///
/// Calls for one file come one at a time. Throws std::system_error; the old content stays then,
/// unless the disk fails while the file is written in place or the renaming synchronised.
void replaceFile(const std::filesystem::path& file, std::string_view content,
                 Irreplaceable otherwise = Irreplaceable::fail);

/// The same, but writes in any case: so it fails now where a change would fail later.
void rewriteFile(const std::filesystem::path& file, std::string_view content);

/// Renames a damaged file, and what SQLite keeps beside a database, to `<name>.damaged-<UTC time>`,
/// so that a new one can be made and nothing is lost. Overwrites nothing; the write-ahead log of a
/// database stays the log of the renamed file. Returns the new name. Throws std::system_error.
std::filesystem::path setAside(const std::filesystem::path& file);

}  // namespace support
