// The flush of streams, replaced when a test is linked (ld --wrap).

#include "fake/Platform.h"

#include <cstdio>

extern "C" {

int __real_fflush(std::FILE* stream);

/// Only the flush of all streams is of interest.
int __wrap_fflush(std::FILE* stream) {
    if (stream == nullptr) {
        fake::Platform::current().journal.write("fflush(all)");
    }
    return __real_fflush(stream);
}
}
