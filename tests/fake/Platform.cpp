#include "fake/Platform.h"

#include <fmt/core.h>

#include <atomic>

namespace fake {

namespace {

std::atomic<Platform*> installed{nullptr};

}  // namespace

Platform::Platform() : previous(installed.exchange(this)) {}

Platform::~Platform() { installed = previous; }

Platform& Platform::current() {
    if (Platform* const platform = installed) {
        return *platform;
    }
    // Serves calls made while the process starts and ends, so it is never destroyed. Making it
    // installs it.
    static Platform& process = *new Platform;
    return process;
}

int Platform::perform(const std::string& function, const std::string& arguments,
                      const std::function<std::string()>& work) {
    const int failure = script.failureOf(function);
    std::string entry = fmt::format("{}({}) -> {}", function, arguments, failure);
    if (failure == 0) {
        const std::string outcome = work();
        if (!outcome.empty()) {
            entry += " " + outcome;
        }
    }
    journal.write(entry);
    return failure;
}

int Platform::refuse(const std::string& function, const std::string& arguments) {
    constexpr int refused = 1;
    journal.write(fmt::format("{}({}) -> {}", function, arguments, refused));
    return refused;
}

}  // namespace fake
