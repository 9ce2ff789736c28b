#pragma once

#include <filesystem>
#include <string_view>

namespace varo {

/// Makes the content that of the file, mode 0644, on the disk. Readers find the old content or the
/// new one, never a part of it: a new file takes the name of the old one. Only where that cannot
/// be, because something is mounted on the file or its directory is read-only, the file is written
/// in place. A symbolic link stays, its target is replaced. Nothing is written when nothing
/// changes.
///
/// Calls for one file come one at a time. Throws std::system_error; the old content stays then,
/// unless the disk fails while the file is written in place.
void replaceFile(const std::filesystem::path& file, std::string_view content);

}  // namespace varo
