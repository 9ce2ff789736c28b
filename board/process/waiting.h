#pragma once

#include "board/support/Descriptor.h"

#include <poll.h>

#include <chrono>
#include <optional>
#include <vector>

namespace process {

using Clock = std::chrono::steady_clock;

/// The earliest of the times at which something is due; none yet.
class Due {
public:
    void by(std::optional<Clock::time_point> other) {
        if (other && (!time || *other < *time)) {
            time = other;
        }
    }
    std::optional<Clock::time_point> time{};
};

/// Waits until one of the descriptors is ready, or the time has come if there is one. False when
/// none is ready: it may also be too early, as a signal interrupts it.
bool awaitReady(std::vector<pollfd>& descriptors, std::optional<Clock::time_point> due);

bool isReadable(const support::Descriptor& descriptor);

/// Wakes a thread that waits for descriptors (eventfd(2)).
class WakeEvent {
public:
    /// Throws std::system_error.
    WakeEvent();

    int descriptor() const { return event.get(); }
    /// From any thread.
    void raise() const;
    /// Takes back what was raised, if anything was.
    void clear() const;

private:
    support::Descriptor event;
};

}  // namespace process
