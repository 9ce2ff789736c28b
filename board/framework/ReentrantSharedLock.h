#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace framework {

/// A re-entrant reader/writer lock whose waits are limited.
///
/// Threads are served in the order in which they asked; readers that stand next to each other in
/// the queue are admitted together. Neither kind can starve the other. A thread that holds the lock
/// does not queue:
/// - it is granted a shared hold at once, also while a writer waits;
/// - it is granted an exclusive hold at once when it holds the lock exclusively;
/// - it is refused an exclusive hold at once when it holds the lock shared only, since two such
///   threads would wait for each other.
///
/// Every hold is released by the thread that obtained it, in any order. A thread that gives up its
/// last exclusive hold while it has shared ones goes on as a reader.
class ReentrantSharedLock {
public:
    /// A thread that waited for `waitLimit` is refused.
    explicit ReentrantSharedLock(std::chrono::milliseconds waitLimit);
    ReentrantSharedLock(const ReentrantSharedLock&) = delete;
    ReentrantSharedLock& operator=(const ReentrantSharedLock&) = delete;

    /// Counts for the waits that begin afterwards.
    void setWaitLimit(std::chrono::milliseconds waitLimit);

    /// Whether the lock was obtained. After a refusal the thread holds what it held before.
    [[nodiscard]] bool lockShared();
    [[nodiscard]] bool lockExclusive();

    /// Throw std::logic_error when the thread has no such hold.
    void unlockShared();
    void unlockExclusive();

    /// How many threads wait.
    std::size_t waiting() const;

private:
    enum class Mode { shared, exclusive };

    /// What one thread holds.
    struct Hold {
        unsigned shared = 0;
        unsigned exclusive = 0;

        unsigned& of(Mode mode) { return mode == Mode::shared ? shared : exclusive; }
    };

    struct Waiter {
        explicit Waiter(Mode requested) : mode(requested) {}

        const Mode mode;
        Hold* hold = nullptr;
        bool granted = false;
        std::condition_variable wake;
    };

    bool lock(Mode mode);
    void unlock(Mode mode);
    bool isAdmissible(Mode mode) const;
    void admitWaiters();

    std::atomic<std::chrono::milliseconds> limit;

    mutable std::mutex mutex;
    std::unordered_map<std::thread::id, Hold> holds;  ///< of the threads that hold or wait
    std::list<Waiter*> queue;
    std::size_t holders = 0;  ///< threads that hold the lock
    bool isHeldExclusively = false;
};

}  // namespace framework
