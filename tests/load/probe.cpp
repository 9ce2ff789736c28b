// A host process on the fake platform: loads a library by its path, and prints what the library did
// of it when it was loaded, what its functions answer, and what it did when the process ended.

#include "fake/Platform.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace {

void print(const char* stage) {
    for (const std::string& entry : fake::Platform::current().journal.takeAll()) {
        std::printf("%s: %s\n", stage, entry.c_str());
    }
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s LIBRARY\n", argv[0]);
        return 2;
    }
    // Registered before the library is loaded, so it runs after the library's objects are gone.
    fake::Platform::current();
    std::atexit([] { print("exit"); });
    void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    print("load");
    using Operation = int (*)();
    void* const symbol = dlsym(library, "networkDeleteDnsServers");
    if (symbol == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    std::printf("networkDeleteDnsServers() = %d\n", reinterpret_cast<Operation>(symbol)());
    print("call");
    return 0;
}
