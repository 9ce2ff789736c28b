#include "board/support/LogChannel.h"

#include <poll.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace support {

Log systemLog(std::string prefix) {
    return [prefix = std::move(prefix)](int level, const std::string& text) {
        ::syslog(level, "%s%s", prefix.c_str(), text.c_str());
    };
}

void writeToStandardError(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd writable{STDERR_FILENO, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

LogChannel::LogChannel(Log given, int leastSevere) : threshold(leastSevere) {
    setReceiver(std::move(given));
}

void LogChannel::setReceiver(Log given) {
    auto shared = given ? std::make_shared<const Log>(std::move(given)) : nullptr;
    const std::lock_guard guard(mutex);
    hasReceiver = shared != nullptr;
    receiver = std::move(shared);
}

bool LogChannel::listensTo(int level) const {
    return hasReceiver && std::max(level, 0) <= threshold;
}

void LogChannel::operator()(int level, const std::string& text) const noexcept {
    try {
        if (!listensTo(level)) {
            return;
        }
        std::shared_ptr<const Log> current;
        {
            const std::lock_guard guard(mutex);
            current = receiver;
        }
        if (current) {
            (*current)(level, text);
        }
    } catch (...) {
        // There is no one left to tell.
    }
}

}  // namespace support
