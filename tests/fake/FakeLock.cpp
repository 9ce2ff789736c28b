#include "fake/FakeLock.h"

#include <algorithm>

namespace fake {

bool FakeLock::admits(Mode mode, const Holds& own) const {
    if (own.exclusive > 0 || (own.shared > 0 && mode == Mode::shared)) {
        return true;
    }
    return std::ranges::all_of(holders, [&](const auto& holder) {
        const Holds& holds = holder.second;
        return &holds == &own ||
               (holds.exclusive == 0 && (mode == Mode::shared || holds.shared == 0));
    });
}

bool FakeLock::acquire(Mode mode) {
    std::unique_lock guard(mutex);
    Holds& own = holders[std::this_thread::get_id()];
    const bool upgrade = mode == Mode::exclusive && own.shared > 0 && own.exclusive == 0;
    if (upgrade || !released.wait_for(guard, limit, [&] { return admits(mode, own); })) {
        return false;
    }
    ++(mode == Mode::exclusive ? own.exclusive : own.shared);
    return true;
}

void FakeLock::release(Mode mode) {
    const std::lock_guard guard(mutex);
    Holds& own = holders[std::this_thread::get_id()];
    --(mode == Mode::exclusive ? own.exclusive : own.shared);
    released.notify_all();
}

}  // namespace fake
