// Calls an exported function before the library's own start-up code has run, and prints what
// happened.

#include "fake/Platform.h"
#include "network/exports.h"

#include <cstdio>

namespace {

int earlyResult = 0;

// Constructors of this priority run before those of any object without one.
__attribute__((constructor(101))) void callEarly() {
    earlyResult = networkSetHostname("early");
    fake::Platform::current().journal.write("networkSetHostname() returned");
}

}  // namespace

int main() {
    std::printf("%d\n", earlyResult);
    for (const std::string& entry : fake::Platform::current().journal.takeAll()) {
        std::printf("%s\n", entry.c_str());
    }
    return 0;
}
