#include "board/framework/ThreadNames.h"

#include <pthread.h>
#include <unistd.h>

#include <cstddef>

namespace framework {

namespace {

/// What pthread_setname_np(3) takes, without the terminator.
constexpr std::size_t systemNameLength = 15;

}  // namespace

/// Strikes a thread off the books when it ends.
struct ThreadNameRelease {
    ThreadNames* names = nullptr;

    ThreadNameRelease() = default;
    ThreadNameRelease(const ThreadNameRelease&) = delete;
    ThreadNameRelease& operator=(const ThreadNameRelease&) = delete;
    ~ThreadNameRelease() {
        if (names != nullptr) {
            names->forget(gettid());
        }
    }
};

void ThreadNames::nameThisThread(const std::string& name) {
    thread_local ThreadNameRelease release;
    setSystemThreadName(name);
    const std::lock_guard guard(mutex);
    names[gettid()] = name;
    release.names = this;
}

std::string ThreadNames::nameOf(pid_t thread) const {
    const std::lock_guard guard(mutex);
    const auto found = names.find(thread);
    return found == names.end() ? std::string() : found->second;
}

void ThreadNames::forget(pid_t thread) {
    const std::lock_guard guard(mutex);
    names.erase(thread);
}

void setSystemThreadName(const std::string& name) {
    pthread_setname_np(pthread_self(), name.substr(0, systemNameLength).c_str());
}

}  // namespace framework
