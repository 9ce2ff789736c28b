#pragma once

#include <filesystem>

namespace framework {

/// Names the file whose first line is the version of the system software as a whole. It is read
/// each time that somebody asks. Empty, as at first: the version is not known.
void setSoftwareVersionFile(const std::filesystem::path& file);

}  // namespace framework
