// Shell commands, replaced when a test is linked (ld --wrap).

#include "fake/Platform.h"
#include "fake/quoted.h"

#include <fmt/core.h>

using fake::Platform;
using fake::quoted;

extern "C" {

int __wrap_system(const char* command) {
    Platform& platform = Platform::current();
    const auto scripted = platform.commandStatus.find(command);
    const int status = scripted == platform.commandStatus.end() ? 0 : scripted->second;
    platform.journal.write(fmt::format("system({}) -> {}", quoted(command), status));
    return status;
}
}
