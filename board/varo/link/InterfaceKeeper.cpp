#include "board/varo/link/InterfaceKeeper.h"

#include "board/varo/link/dhcpEvent.h"
#include "board/varo/link/reportText.h"

#include <fmt/format.h>
#include <pthread.h>
#include <syslog.h>

#include <chrono>
#include <system_error>

namespace varo {

namespace {

/// How long callers wait for a client's end, which takes two seconds at most by itself.
constexpr std::chrono::seconds settleLimit{5};
constexpr std::chrono::seconds patience{2};
constexpr std::chrono::seconds longestPause{60};

constexpr const char* call = "management interface";

void log(int level, const std::string& text) { Library::instance().log(level, text); }

process::LinkMonitor watchLinks() {
    try {
        return {};
    } catch (const std::system_error& error) {
        throw Failure(systemFailed, error.what());
    }
}

}  // namespace

InterfaceKeeper::InterfaceKeeper(Names given) : names(std::move(given)), monitor(watchLinks()) {}

void InterfaceKeeper::start(Netlink& netlink, const std::optional<Netlink::Link>& link) {
    knownIndex = link ? link->index : 0;
    usableInterface = usable(netlink, link);
    thread = std::thread([this] { run(); });
}

std::uint64_t InterfaceKeeper::want(const process::Command& command) {
    const std::lock_guard lock(mutex);
    if (command != wantedCommand) {
        wantedCommand = command;
        ++wantedNumber;
        wake.raise();
    }
    return wantedNumber;
}

std::uint64_t InterfaceKeeper::wish() {
    const std::lock_guard lock(mutex);
    return wantedNumber;
}

bool InterfaceKeeper::awaitSettled(std::uint64_t number) {
    std::unique_lock lock(mutex);
    return settled.wait_for(lock, settleLimit, [&] { return settledNumber >= number || isEnding; });
}

void InterfaceKeeper::end() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        wake.raise();
    }
    settled.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
}

bool InterfaceKeeper::isWanted(std::uint64_t number) {
    const std::lock_guard lock(mutex);
    return number == wantedNumber && !isEnding;
}

void InterfaceKeeper::run() {
    ::pthread_setname_np(::pthread_self(), names.thread.c_str());
    process::Supervisor client(
        {.name = "the " + names.client,
         .longestPause = longestPause,
         .patience = patience,
         .failureLevel = LOG_WARNING,
         .tellsAll = true,
         .socketVariable = dhcpEventVariable},
        {.log = log,
         .line = [&](const auto& line) { log(LOG_DEBUG, names.client + ": " + line); },
         .message = [&](const auto& message) { receive(client, message); }});
    for (;;) {
        const std::uint64_t taken = passWish(client);
        guarded(call, [&] { client.act(); });
        {
            const std::lock_guard lock(mutex);
            if (client.isSettled()) {
                settledNumber = taken;
            }
            if (isEnding && !client.isRunning()) {
                return;
            }
        }
        settled.notify_all();
        wait(client);
    }
}

/// Returns the number of the wish. At the end, and without a usable interface, no client is to
/// run.
std::uint64_t InterfaceKeeper::passWish(process::Supervisor& client) {
    const std::lock_guard lock(mutex);
    process::Supervisor::Wish wish{wantedNumber, usableInterface, {}};
    if (usableInterface != 0 && !isEnding) {
        wish.command = wantedCommand;
    }
    if (client.want(wish)) {
        client.works();
        client.startNow();
    }
    return wantedNumber;
}

void InterfaceKeeper::receive(process::Supervisor& client, const std::string& message) {
    guarded(names.client.c_str(), [&] {
        Report report;
        try {
            report = read(client.starts(), message);
        } catch (const BadReport& bad) {
            log(LOG_ERR,
                fmt::format("a report of the {} is not usable: {}", names.client, bad.what()));
            return;
        }
        auto change = Library::instance().change();
        // It may have been switched off meanwhile, and what it says counts no more.
        if (!isWanted(client.runningFor().number)) {
            return;
        }
        if (report.showsServer) {
            client.works();
        }
        report.apply(change);
    });
}

void InterfaceKeeper::wait(const process::Supervisor& client) {
    std::vector<pollfd> descriptors{{wake.descriptor(), POLLIN, 0},
                                    {monitor.descriptor(), POLLIN, 0}};
    client.addTo(descriptors);
    // Interrupted by a signal: looking too early does no harm.
    if (!process::awaitReady(descriptors, client.due())) {
        return;
    }
    wake.clear();
    if (descriptors[1].revents != 0) {
        monitor.drain();
        guarded(call, [&] { look(); });
    }
}

void InterfaceKeeper::look() {
    Netlink netlink;
    const auto link = netlink.link(names.interface);
    const int index = link ? link->index : 0;
    const bool isNew = index != knownIndex;
    knownIndex = index;
    usableInterface = usable(netlink, link);
    lookAt(netlink, link, isNew);
}

}  // namespace varo
