#include "board/process/waiting.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <system_error>

namespace process {

bool awaitReady(std::vector<pollfd>& descriptors, std::optional<Clock::time_point> due) {
    int timeout = -1;
    if (due) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - Clock::now()).count();
        timeout =
            static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
    }
    return ::poll(descriptors.data(), descriptors.size(), timeout) > 0;
}

bool isReadable(const support::Descriptor& descriptor) {
    pollfd one{descriptor.get(), POLLIN, 0};
    return ::poll(&one, 1, 0) == 1;
}

WakeEvent::WakeEvent() : event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!event) {
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
    }
}

void WakeEvent::raise() const {
    const std::uint64_t one = 1;
    // It fails only when the counter is full, which wakes as well.
    [[maybe_unused]] const ssize_t written = ::write(event.get(), &one, sizeof one);
}

void WakeEvent::clear() const {
    std::uint64_t ignored = 0;
    [[maybe_unused]] const ssize_t size = ::read(event.get(), &ignored, sizeof ignored);
}

}  // namespace process
