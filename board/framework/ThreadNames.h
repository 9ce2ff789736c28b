#pragma once

#include <sys/types.h>

#include <map>
#include <mutex>
#include <string>

namespace framework {

/// The names that threads gave themselves, each until its thread ends.
class ThreadNames {
public:
    ThreadNames() = default;
    ThreadNames(const ThreadNames&) = delete;
    ThreadNames& operator=(const ThreadNames&) = delete;

    /// Names the calling thread, or renames it, also for the system (the first 15 bytes).
    /// The object must outlive the thread.
    void nameThisThread(const std::string& name);

    /// Empty for a thread without a name.
    std::string nameOf(pid_t thread) const;

private:
    friend struct ThreadNameRelease;
    void forget(pid_t thread);

    mutable std::mutex mutex;
    std::map<pid_t, std::string> names;
};

/// Names the calling thread for the system, which keeps the first 15 bytes.
void setSystemThreadName(const std::string& name);

}  // namespace framework
