#include "board/process/Daemon.h"

#include <fmt/format.h>
#include <net/if.h>
#include <signal.h>
#include <syslog.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace process {

using std::chrono::milliseconds;

Daemon::Daemon(Traits daemonTraits, support::Log logReceiver)
    : traits(std::move(daemonTraits)),
      log(std::move(logReceiver)),
      supervisor({.name = traits.name,
                  .longestPause = longestPause,
                  .patience = patience,
                  .failureLevel = LOG_ERR},
                 {.log = log,
                  .line = [this](const std::string& line) { takeLine(line); },
                  .failure = [this](const std::string& why) { fail(why); }}),
      thread([this] { work(); }) {}

Daemon::~Daemon() { end(); }

void Daemon::want(const Command& command, const std::string& restartKey) {
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
    wake.raise();
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
    wake.raise();
    changed.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
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
        if (ending && !supervisor.isRunning()) {
            return;
        }
        wait();
    }
}

void Daemon::wait() {
    std::vector<pollfd> descriptors{{wake.descriptor(), POLLIN, 0}};
    supervisor.addTo(descriptors);
    Due due{supervisor.due()};
    if (supervisor.isRunning()) {
        if (!current.isReady) {
            due.by(readyAt());
        }
        if (current.reloading) {
            due.by(current.reloadingSince + longestReload);
        }
        if (!traits.interface.empty()) {
            due.by(Clock::now() + interfaceCheck);
        }
    }
    awaitReady(descriptors, due.time);
    wake.clear();
}

void Daemon::act(const Wish& wish, bool ending) {
    // A change is tried at once, whatever the pause.
    if (std::exchange(lastWish, wish.reload) != wish.reload) {
        supervisor.startNow();
    }
    // What has served for a while may be started again soon.
    if (supervisor.isRunning() && current.isReady && Clock::now() - current.since > longestPause) {
        supervisor.works();
    }
    const unsigned index =
        traits.interface.empty() ? 0 : ::if_nametoindex(traits.interface.c_str());
    const std::uint64_t starts = supervisor.starts();
    supervisor.want({wish.start, 0, ending ? Command{} : wish.command});
    supervisor.act();
    if (supervisor.starts() != starts) {
        current = {.reload = wish.reload, .interface = index, .since = Clock::now()};
    } else if (supervisor.isEnding() || ending) {
        return;
    } else if (!supervisor.isRunning()) {
        if (wish.command.empty()) {
            putInForce(wish.reload);
        }
    } else if (index != 0 && index != current.interface) {
        supervisor.askToEnd();
    } else {
        becomeReady();
        reloadIfDue(wish);
    }
}

void Daemon::takeLine(const std::string& line) {
    log(LOG_DEBUG, fmt::format("{}: {}", traits.name, line));
    const auto has = [&](const std::string& mark) {
        return !mark.empty() && line.find(mark) != std::string::npos;
    };
    if (current.reloading && has(traits.reloadedMark)) {
        putInForce(*std::exchange(current.reloading, {}));
    } else if (!current.isReady && has(traits.readyMark)) {
        current.isReady = true;
        putInForce(current.reload);
    }
}

Clock::time_point Daemon::readyAt() const {
    return current.since + (traits.readyMark.empty() ? shortStart : longStart);
}

void Daemon::becomeReady() {
    if (!current.isReady && Clock::now() >= readyAt()) {
        current.isReady = true;
        putInForce(current.reload);
    }
}

/// SIGHUP ends a program that has not yet said what to do on it, so it is sent to a ready one only.
void Daemon::reloadIfDue(const Wish& wish) {
    if (current.reloading && Clock::now() >= current.reloadingSince + longestReload) {
        current.reloading.reset();
    }
    if (!current.isReady || current.reloading || current.reload == wish.reload) {
        return;
    }
    current.reload = wish.reload;
    current.reloading = wish.reload;
    current.reloadingSince = Clock::now();
    supervisor.signal(SIGHUP);
}

void Daemon::putInForce(std::uint64_t wish) {
    {
        const std::lock_guard lock(mutex);
        inForce = std::max(inForce, wish);
        failure.clear();
    }
    changed.notify_all();
}

void Daemon::fail(const std::string& why) {
    {
        const std::lock_guard lock(mutex);
        ++failures;
        failure = why;
    }
    changed.notify_all();
}

}  // namespace process
