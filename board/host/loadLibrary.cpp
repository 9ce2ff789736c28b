#include "board/host/loadLibrary.h"

#include "board/host/StartFailure.h"

#include <dlfcn.h>

#include <string>

namespace host {

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
