#include "board/process/Supervisor.h"

#include <fmt/format.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

namespace process {

namespace {

/// Longer messages and lines are cut.
constexpr std::size_t longestMessage = 8192;
constexpr std::size_t longestLine = 512;

}  // namespace

Supervisor::Supervisor(Traits traitsOfProgram, Receivers whoIsTold)
    : traits(std::move(traitsOfProgram)), told(std::move(whoIsTold)) {}

bool Supervisor::want(const Wish& wish) {
    const bool isOther = wish != wanted;
    wanted = wish;
    return isOther;
}

void Supervisor::act() {
    if (running) {
        // What it has said before its end counts.
        const bool hasEnded = running->process.hasEnded();
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

void Supervisor::addTo(std::vector<pollfd>& descriptors) const {
    if (!running) {
        return;
    }
    descriptors.push_back({running->process.handle().get(), POLLIN, 0});
    if (running->hasMessages) {
        descriptors.push_back({running->process.messages().get(), POLLIN, 0});
    }
    if (running->hasOutput) {
        descriptors.push_back({running->process.output().get(), POLLIN, 0});
    }
}

std::optional<Clock::time_point> Supervisor::due() const {
    if (running) {
        return running->killAt;
    }
    return wanted.command.empty() ? std::nullopt : std::optional(startAt);
}

void Supervisor::readMessages() {
    std::string message(longestMessage, '\0');
    while (running->hasMessages) {
        const ssize_t size =
            ::recv(running->process.messages().get(), message.data(), message.size(), 0);
        if (size == 0) {
            running->hasMessages = false;
        }
        if (size <= 0) {
            return;
        }
        told.message(message.substr(0, static_cast<std::size_t>(size)));
    }
}

void Supervisor::readOutput() {
    char buffer[1024];
    while (running->hasOutput) {
        const ssize_t size = ::read(running->process.output().get(), buffer, sizeof buffer);
        if (size == 0) {
            running->hasOutput = false;
        }
        if (size <= 0) {
            return;
        }
        for (const char c : std::string_view(buffer, static_cast<std::size_t>(size))) {
            if (c == '\n') {
                takeLine();
            } else if (running->unfinishedLine.size() < longestLine) {
                running->unfinishedLine += c;
            }
        }
    }
}

void Supervisor::takeLine() {
    std::string line = std::exchange(running->unfinishedLine, {});
    if (!line.empty() || traits.tellsAll) {
        told.line(line);
        running->lastLine = std::move(line);
    }
}

void Supervisor::takeEnd() {
    const std::string how = running->process.awaitEnd();
    // Whom a signal has ended has not told why.
    const std::string lastLine =
        how.starts_with("status") || traits.tellsAll ? running->lastLine : "";
    const bool wasWanted = isSettled() && !running->isAskedToEnd;
    running.reset();
    startNow();
    if (wasWanted) {
        postpone(fmt::format("{} has ended with {}{}{}", traits.name, how,
                             lastLine.empty() ? "" : ": ", lastLine));
    }
}

void Supervisor::askToEnd() {
    const auto now = Clock::now();
    if (!running->isAskedToEnd) {
        running->isAskedToEnd = true;
        running->killAt = now + traits.patience;
        running->process.signal(SIGTERM);
    } else if (running->killAt && now >= *running->killAt) {
        running->killAt.reset();
        running->process.signal(SIGKILL);
    }
}

void Supervisor::start() {
    try {
        running.emplace(Running{wanted, ChildProcess(wanted.command, traits.socketVariable),
                                !traits.socketVariable.empty()});
        ++startCount;
    } catch (const std::exception& error) {
        postpone(fmt::format("{} cannot be started: {}", traits.name, error.what()));
    }
}

void Supervisor::postpone(const std::string& why) {
    told.log(traits.failureLevel,
             fmt::format("{}; it is started again in {} s", why, pause.count()));
    startAt = Clock::now() + pause;
    pause = std::min(2 * pause, traits.longestPause);
    if (told.failure) {
        told.failure(why);
    }
}

}  // namespace process
