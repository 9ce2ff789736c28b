#include "board/host/stateDirectory.h"

#include "board/host/StartFailure.h"
#include "board/support/Descriptor.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

namespace host {

void checkStateDirectory(const std::filesystem::path& directory) {
    const std::string name = "the state directory " + directory.string();
    std::error_code error;
    if (!std::filesystem::is_directory(directory, error)) {
        throw StartFailure(name + (error && error != std::errc::no_such_file_or_directory
                                       ? " cannot be used: " + error.message() + "."
                                       : " does not exist; create it (mkdir -p " +
                                             directory.string() + ") or name another one."));
    }
    // The permission bits alone tell nothing of a file system that is mounted read-only.
    std::string probe = (directory / ".probe-XXXXXX").string();
    const support::Descriptor created(mkstemp(probe.data()));
    if (!created) {
        throw StartFailure(name + " is not writable (" + std::strerror(errno) +
                           "); give this user write access to it or name another one.");
    }
    std::filesystem::remove(probe, error);
}

}  // namespace host
