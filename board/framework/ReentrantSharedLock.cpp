#include "board/framework/ReentrantSharedLock.h"

#include <stdexcept>

namespace framework {

ReentrantSharedLock::ReentrantSharedLock(std::chrono::milliseconds waitLimit) : limit(waitLimit) {}

void ReentrantSharedLock::setWaitLimit(std::chrono::milliseconds waitLimit) { limit = waitLimit; }

bool ReentrantSharedLock::lockShared() { return lock(Mode::shared); }

bool ReentrantSharedLock::lockExclusive() { return lock(Mode::exclusive); }

void ReentrantSharedLock::unlockShared() { unlock(Mode::shared); }

void ReentrantSharedLock::unlockExclusive() { unlock(Mode::exclusive); }

std::size_t ReentrantSharedLock::waiting() const {
    const std::lock_guard guard(mutex);
    return queue.size();
}

bool ReentrantSharedLock::lock(Mode mode) {
    const auto thread = std::this_thread::get_id();
    std::unique_lock guard(mutex);
    if (const auto own = holds.find(thread); own != holds.end()) {
        if (mode == Mode::exclusive && own->second.exclusive == 0) {
            return false;
        }
        ++own->second.of(mode);
        return true;
    }

    // All memory is obtained before anything changes: granting and giving up cannot fail.
    Waiter waiter(mode);
    std::list<Waiter*> link{&waiter};
    waiter.hold = &holds[thread];
    queue.splice(queue.end(), link);
    admitWaiters();
    if (waiter.wake.wait_for(guard, limit.load(), [&] { return waiter.granted; })) {
        return true;
    }
    queue.remove(&waiter);
    holds.erase(thread);
    // Those behind may have been waiting for this thread only.
    admitWaiters();
    return false;
}

void ReentrantSharedLock::unlock(Mode mode) {
    const std::lock_guard guard(mutex);
    const auto own = holds.find(std::this_thread::get_id());
    if (own == holds.end() || own->second.of(mode) == 0) {
        throw std::logic_error("the thread does not hold the lock");
    }
    --own->second.of(mode);
    if (own->second.exclusive == 0) {
        isHeldExclusively = false;
        if (own->second.shared == 0) {
            holds.erase(own);
            --holders;
        }
    }
    admitWaiters();
}

bool ReentrantSharedLock::isAdmissible(Mode mode) const {
    return mode == Mode::shared ? !isHeldExclusively : holders == 0;
}

void ReentrantSharedLock::admitWaiters() {
    while (!queue.empty() && isAdmissible(queue.front()->mode)) {
        Waiter& next = *queue.front();
        queue.pop_front();
        next.hold->of(next.mode) = 1;
        ++holders;
        isHeldExclusively = next.mode == Mode::exclusive;
        next.granted = true;
        next.wake.notify_one();
    }
}

}  // namespace framework
