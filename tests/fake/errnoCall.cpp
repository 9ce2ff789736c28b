#include "fake/errnoCall.h"

#include "fake/Platform.h"

#include <fmt/core.h>

#include <cerrno>

namespace fake {

namespace {

int scriptedError(const std::string& function, const std::string& kind) {
    Script& script = Platform::current().script;
    const int error = script.failureOf(function);
    return error != 0 || kind.empty() ? error : script.failureOf(function + " " + kind);
}

}  // namespace

int errnoCall(const std::string& function, const std::string& arguments,
              const std::function<Outcome()>& work, const std::string& kind) {
    const int scripted = scriptedError(function, kind);
    const Outcome outcome = scripted != 0 ? Outcome::failure(scripted) : work();
    std::string entry = fmt::format("{}({}) -> ", function, arguments);
    entry += outcome.error != 0 ? fmt::format("errno {}", outcome.error)
                                : fmt::format("{}", outcome.result);
    if (!outcome.detail.empty()) {
        entry += " " + outcome.detail;
    }
    Platform::current().journal.write(entry);
    if (outcome.error != 0) {
        errno = outcome.error;
    }
    return outcome.result;
}

}  // namespace fake
