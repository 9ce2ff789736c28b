#pragma once

#include <functional>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace framework {

/// Asks whoever knows for what front ends are told of it. For all threads.
template <class Report>
class Reporter {
public:
    /// `absence` is the failure of a board on which nobody knows; it has to live as long.
    explicit Reporter(const char* absence) : reason(absence) {}

    /// Says who knows: a function that may be called from any thread, and throws std::exception
    /// with the reason when it cannot tell. Empty: nobody.
    void set(std::function<Report()> function) {
        const std::lock_guard lock(mutex);
        known = std::move(function);
    }

    /// Throws what the function throws, and std::runtime_error when there is none.
    Report ask() {
        std::function<Report()> function;
        {
            const std::lock_guard lock(mutex);
            function = known;
        }
        if (!function) {
            throw std::runtime_error(reason);
        }
        return function();
    }

private:
    const char* const reason;
    std::mutex mutex;
    std::function<Report()> known;
};

}  // namespace framework
