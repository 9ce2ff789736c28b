#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace fake {

/// The framework's re-entrant reader/writer lock, without its fairness.
class FakeLock {
public:
    enum class Mode { shared, exclusive };

    bool acquire(Mode mode);
    void release(Mode mode);

    /// How long a request waits before it is refused.
    std::chrono::milliseconds limit{50};

private:
    struct Holds {
        int shared = 0;
        int exclusive = 0;
    };

    bool admits(Mode mode, const Holds& own) const;

    std::mutex mutex;
    std::condition_variable released;
    std::map<std::thread::id, Holds> holders;
};

}  // namespace fake
