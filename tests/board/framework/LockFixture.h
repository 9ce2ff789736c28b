#pragma once

#include "board/framework/ReentrantSharedLock.h"
#include "support/matchers.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>

namespace test {

/// Never waited for by a lock that works.
constexpr std::chrono::seconds ample{30};
constexpr std::chrono::milliseconds brief{20};

/// Tests with a lock, and threads that use it.
class LockFixture : public testing::Test {
protected:
    /// Returns when so many threads stand in the queue.
    void awaitWaiting(std::size_t count) const {
        const auto deadline = std::chrono::steady_clock::now() + ample;
        while (lock.waiting() != count) {
            if (std::chrono::steady_clock::now() > deadline) {
                throw std::runtime_error("the queue never had the length " + std::to_string(count));
            }
            std::this_thread::yield();
        }
    }

    /// Runs a body on another thread and returns its result.
    static bool elsewhere(const std::function<bool()>& body) {
        return std::async(std::launch::async, body).get();
    }

    /// Whether another thread would be granted the lock now.
    bool isFreeForReaders() {
        return elsewhere([this] {
            const bool obtained = lock.lockShared();
            if (obtained) {
                lock.unlockShared();
            }
            return obtained;
        });
    }
    bool isFreeForWriters() {
        return elsewhere([this] {
            const bool obtained = lock.lockExclusive();
            if (obtained) {
                lock.unlockExclusive();
            }
            return obtained;
        });
    }

    framework::ReentrantSharedLock lock{ample};
};

}  // namespace test
