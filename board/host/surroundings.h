#pragma once

#include <filesystem>
#include <stdexcept>

namespace host {

/// Why the process could not start: a sentence for the user, with what to do about it.
class StartFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Sets the soft limit on descriptors to 1024, or to the hard limit where that is lower: the RPC
/// library serves its transports with select(2), which does not see descriptors above. Throws
/// StartFailure.
void limitDescriptors();

/// Makes sure that a directory exists and that files can be created in it. Throws StartFailure.
void checkStateDirectory(const std::filesystem::path& directory);

/// Loads an entity library, for the life of the process. Its entities register themselves while it
/// is being loaded, and it finds what it imports in this program. Returns the
/// handle for dlsym(3). Throws StartFailure with the cause.
void* loadLibrary(const std::filesystem::path& file);

}  // namespace host
