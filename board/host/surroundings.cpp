#include "board/host/surroundings.h"

#include "board/support/Descriptor.h"

#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/select.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

namespace host {

void limitDescriptors() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = std::min<rlim_t>(FD_SETSIZE, limit.rlim_max);
        if (setrlimit(RLIMIT_NOFILE, &limit) == 0) {
            return;
        }
    }
    throw StartFailure(std::string("cannot limit the number of descriptors: ") +
                       std::strerror(errno) + ".");
}

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

void* loadLibrary(const std::filesystem::path& file) {
    // Bound at once, so that a missing name is found here and not in the middle of an operation.
    void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* const cause = dlerror();
        throw StartFailure("the library " + file.string() + " cannot be loaded (" +
                           (cause == nullptr ? "unknown cause" : cause) +
                           "); name one that was built for this board with --library.");
    }
    return library;
}

}  // namespace host
