#include "board/varo/link/DhcpClient.h"

#include "board/varo/Library.h"
#include "board/varo/link/dhcpEvent.h"

#include <fmt/format.h>
#include <signal.h>
#include <sys/socket.h>
#include <syslog.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

namespace varo {

namespace {

/// Longer messages and lines are none of the client's.
constexpr std::size_t longestMessage = 8192;
constexpr std::size_t longestLine = 512;

bool isReadable(const support::Descriptor& descriptor) {
    pollfd one{descriptor.get(), POLLIN, 0};
    return ::poll(&one, 1, 0) == 1;
}

}  // namespace

DhcpClient::Running::Running(const Wish& startedFor, std::uint64_t startNumber)
    : wish(startedFor), start(startNumber), child(wish.command, dhcpEventVariable) {}

void DhcpClient::want(const Wish& wish) {
    if (wish == wanted) {
        return;
    }
    wanted = wish;
    pause = shortestPause;
    startAt = Clock::now();
}

void DhcpClient::act() {
    if (running) {
        // What it has reported before its end counts.
        const bool hasEnded = isReadable(running->child.handle());
        readMessages();
        readOutput();
        if (hasEnded) {
            takeEnd();
        } else if (running->isAskedToEnd || !isSettled()) {
            askToEnd();
        }
    }
    if (!running && !wanted.command.empty() && Clock::now() >= startAt) {
        start();
    }
}

void DhcpClient::addTo(std::vector<pollfd>& descriptors) const {
    if (!running) {
        return;
    }
    descriptors.push_back({running->child.handle().get(), POLLIN, 0});
    if (running->hasMessages) {
        descriptors.push_back({running->child.messages().get(), POLLIN, 0});
    }
    if (running->hasOutput) {
        descriptors.push_back({running->child.output().get(), POLLIN, 0});
    }
}

std::optional<DhcpClient::Clock::time_point> DhcpClient::due() const {
    if (running) {
        return running->killAt;
    }
    if (!wanted.command.empty()) {
        return startAt;
    }
    return std::nullopt;
}

void DhcpClient::readMessages() {
    std::string message(longestMessage, '\0');
    for (;;) {
        const ssize_t size =
            ::recv(running->child.messages().get(), message.data(), message.size(), 0);
        if (size == 0) {
            running->hasMessages = false;
        }
        if (size <= 0) {
            return;
        }
        receiver(running->wish.number, running->start,
                 message.substr(0, static_cast<std::size_t>(size)));
    }
}

void DhcpClient::readOutput() {
    char buffer[1024];
    for (;;) {
        const ssize_t size = ::read(running->child.output().get(), buffer, sizeof buffer);
        if (size == 0) {
            running->hasOutput = false;
        }
        if (size <= 0) {
            return;
        }
        for (const char c : std::string_view(buffer, static_cast<std::size_t>(size))) {
            if (c != '\n') {
                if (running->unfinishedLine.size() < longestLine) {
                    running->unfinishedLine += c;
                }
                continue;
            }
            Library::instance().log(LOG_DEBUG, name + ": " + running->unfinishedLine);
            running->lastLine = std::exchange(running->unfinishedLine, {});
        }
    }
}

void DhcpClient::takeEnd() {
    const std::string how = running->child.awaitEnd();
    const std::string lastLine = running->lastLine;
    const bool wasWanted = isSettled() && !running->isAskedToEnd;
    running.reset();
    if (wasWanted) {
        postpone(fmt::format("the {} has ended with {}{}{}", name, how,
                             lastLine.empty() ? "" : ": ", lastLine));
    }
}

void DhcpClient::askToEnd() {
    const auto now = Clock::now();
    if (!running->isAskedToEnd) {
        running->isAskedToEnd = true;
        running->killAt = now + patience;
        running->child.signal(SIGTERM);
    } else if (running->killAt && now >= *running->killAt) {
        running->killAt.reset();
        running->child.signal(SIGKILL);
    }
}

void DhcpClient::start() {
    try {
        running.emplace(wanted, ++starts);
    } catch (const std::exception& error) {
        postpone(fmt::format("the {} cannot be started: {}", name, error.what()));
    }
}

void DhcpClient::postpone(const std::string& why) {
    Library::instance().log(LOG_WARNING,
                            fmt::format("{}; it is started again in {} s", why, pause.count()));
    startAt = Clock::now() + pause;
    pause = std::min(2 * pause, longestPause);
}

}  // namespace varo
