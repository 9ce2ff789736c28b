#pragma once

#include <filesystem>

namespace host {

/// Loads an entity library, for the life of the process. Its entities register themselves while it
/// is being loaded, and it finds what it imports in this program. Returns the
/// handle for dlsym(3). Throws StartFailure with the cause.
void* loadLibrary(const std::filesystem::path& file);

}  // namespace host
