#include "board/process/Daemon.h"

#include <fmt/format.h>
#include <net/if.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace process {

namespace {

using std::chrono::milliseconds;

/// Longer lines are cut.
constexpr std::size_t longestLine = 512;
/// The programs need no socket to the board; it is theirs to close.
constexpr const char* socketVariable = "NETWORKBLE_SOCKET";

bool isReadable(const support::Descriptor& descriptor) {
    pollfd one{descriptor.get(), POLLIN, 0};
    return ::poll(&one, 1, 0) == 1;
}

}  // namespace

Daemon::Running::Running(const Wish& wish, unsigned boundInterface)
    : process(wish.command, socketVariable),
      start(wish.start),
      reload(wish.reload),
      interface(boundInterface) {}

Daemon::Daemon(Traits daemonTraits, Log logReceiver)
    : traits(std::move(daemonTraits)),
      log(std::move(logReceiver)),
      wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!wake) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    thread = std::thread([this] { work(); });
}

Daemon::~Daemon() { end(); }

void Daemon::want(const std::vector<std::string>& command, const std::string& restartKey) {
    {
        const std::lock_guard lock(mutex);
        const bool isSame = command == wanted.command && restartKey == wanted.restartKey;
        ++wanted.reload;
        if (!isSame || traits.reloadedMark.empty()) {
            wanted.start = wanted.reload;
        }
        wanted.command = command;
        wanted.restartKey = restartKey;
        if (command.empty()) {
            failure.clear();
        }
    }
    wakeUp();
}

void Daemon::await(milliseconds limit) {
    std::unique_lock lock(mutex);
    const std::uint64_t wish = wanted.reload;
    const std::uint64_t before = failures;
    const bool isSettled = changed.wait_for(
        lock, limit, [&] { return inForce >= wish || failures != before || isEnding; });
    if (inForce >= wish || isEnding) {
        return;
    }
    if (isSettled) {
        throw std::runtime_error(failure);
    }
    throw std::runtime_error(failure.empty() ? fmt::format("{} has not taken them within {} ms",
                                                           traits.name, limit.count())
                                             : failure);
}

void Daemon::checkRuns() {
    const std::lock_guard lock(mutex);
    if (!wanted.command.empty() && !failure.empty()) {
        throw std::runtime_error(failure);
    }
}

void Daemon::end() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    wakeUp();
    changed.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
}

void Daemon::wakeUp() const {
    const std::uint64_t one = 1;
    // It fails only when the counter is full, which wakes as well.
    [[maybe_unused]] const ssize_t written = ::write(wake.get(), &one, sizeof one);
}

void Daemon::work() {
    for (;;) {
        Wish wish;
        bool ending = false;
        {
            const std::lock_guard lock(mutex);
            wish = wanted;
            ending = isEnding;
        }
        act(wish, ending);
        if (ending && !running) {
            return;
        }
        wait(wish, ending);
    }
}

void Daemon::wait(const Wish& wish, bool ending) {
    std::vector<pollfd> descriptors{{wake.get(), POLLIN, 0}};
    std::optional<Clock::time_point> due;
    const auto by = [&](Clock::time_point time) { due = due ? std::min(*due, time) : time; };
    if (running) {
        descriptors.push_back({running->process.handle().get(), POLLIN, 0});
        if (running->hasOutput) {
            descriptors.push_back({running->process.output().get(), POLLIN, 0});
        }
        if (running->killAt && !running->isKilled) {
            by(*running->killAt);
        }
        if (!running->isReady) {
            by(running->since + (traits.readyMark.empty() ? shortStart : longStart));
        }
        if (running->reloading) {
            by(running->reloadingSince + longestReload);
        }
        if (!traits.interface.empty()) {
            by(Clock::now() + interfaceCheck);
        }
    } else if (!wish.command.empty() && !ending) {
        by(startAt);
    }
    int timeout = -1;
    if (due) {
        const auto left = std::chrono::ceil<milliseconds>(*due - Clock::now()).count();
        timeout = static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
    }
    ::poll(descriptors.data(), descriptors.size(), timeout);
    std::uint64_t ignored = 0;
    [[maybe_unused]] const ssize_t size = ::read(wake.get(), &ignored, sizeof ignored);
}

void Daemon::act(const Wish& wish, bool ending) {
    if (running) {
        const bool hasEnded = isReadable(running->process.handle());
        readOutput();
        if (hasEnded) {
            takeEnd(wish, ending);
        } else if (ending || wish.command.empty() || running->start != wish.start ||
                   running->killAt || isReplaced()) {
            askToEnd();
        } else {
            becomeReady();
            reloadIfDue(wish);
        }
    }
    if (running || ending) {
        return;
    }
    if (wish.command.empty()) {
        putInForce(wish.reload);
    } else if (Clock::now() >= startAt || wish.reload != failedWish) {
        start(wish);
    }
}

void Daemon::readOutput() {
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

void Daemon::takeLine() {
    const std::string line = std::exchange(running->unfinishedLine, {});
    if (line.empty()) {
        return;
    }
    log(LOG_DEBUG, fmt::format("{}: {}", traits.name, line));
    const auto has = [&](const std::string& mark) {
        return !mark.empty() && line.find(mark) != std::string::npos;
    };
    if (running->reloading && has(traits.reloadedMark)) {
        putInForce(*std::exchange(running->reloading, {}));
    } else if (!running->isReady && has(traits.readyMark)) {
        running->isReady = true;
        putInForce(running->reload);
    }
    running->lastLine = line;
}

void Daemon::takeEnd(const Wish& wish, bool ending) {
    const std::string how = running->process.awaitEnd();
    // Whom a signal has ended has not told why.
    const std::string lastLine = how.starts_with("status") ? running->lastLine : "";
    const bool wasWanted = !running->killAt && running->start == wish.start && !ending;
    // What has served for a while may be started again soon.
    if (running->isReady && Clock::now() - running->since > longestPause) {
        pause = shortestPause;
    }
    running.reset();
    startAt = Clock::now();
    if (wasWanted) {
        postpone(wish, fmt::format("{} has ended with {}{}{}", traits.name, how,
                                   lastLine.empty() ? "" : ": ", lastLine));
    }
}

void Daemon::askToEnd() {
    const auto now = Clock::now();
    if (!running->killAt) {
        running->killAt = now + patience;
        running->process.signal(SIGTERM);
    } else if (!running->isKilled && now >= *running->killAt) {
        running->isKilled = true;
        running->process.signal(SIGKILL);
    }
}

void Daemon::becomeReady() {
    if (running->isReady) {
        return;
    }
    const auto limit = traits.readyMark.empty() ? shortStart : longStart;
    if (Clock::now() < running->since + limit) {
        return;
    }
    running->isReady = true;
    putInForce(running->reload);
}

/// SIGHUP ends a program that has not yet said what to do on it, so it is sent to a ready one only.
void Daemon::reloadIfDue(const Wish& wish) {
    if (running->reloading && Clock::now() >= running->reloadingSince + longestReload) {
        running->reloading.reset();
    }
    if (!running->isReady || running->reloading || running->reload == wish.reload) {
        return;
    }
    running->reload = wish.reload;
    running->reloading = wish.reload;
    running->reloadingSince = Clock::now();
    running->process.signal(SIGHUP);
}

void Daemon::start(const Wish& wish) {
    try {
        running.emplace(wish, interfaceIndex());
    } catch (const std::exception& error) {
        postpone(wish, fmt::format("{} cannot be started: {}", traits.name, error.what()));
    }
}

void Daemon::postpone(const Wish& wish, const std::string& why) {
    log(LOG_ERR, fmt::format("{}; it is started again in {} s", why, pause.count()));
    startAt = Clock::now() + pause;
    pause = std::min(2 * pause, longestPause);
    failedWish = wish.reload;
    {
        const std::lock_guard lock(mutex);
        ++failures;
        failure = why;
    }
    changed.notify_all();
}

void Daemon::putInForce(std::uint64_t wish) {
    {
        const std::lock_guard lock(mutex);
        inForce = std::max(inForce, wish);
        failure.clear();
    }
    changed.notify_all();
}

unsigned Daemon::interfaceIndex() const {
    return traits.interface.empty() ? 0 : ::if_nametoindex(traits.interface.c_str());
}

bool Daemon::isReplaced() const {
    const unsigned now = interfaceIndex();
    return now != 0 && now != running->interface;
}

}  // namespace process
