#include "board/varo/link/InterfaceKeeper.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <system_error>

namespace varo {

namespace {

using Clock = DhcpClient::Clock;

/// How long callers wait for a client's end, which takes two seconds at most by itself.
constexpr std::chrono::seconds settleLimit{5};

constexpr const char* call = "management interface";

int millisecondsUntil(Clock::time_point time) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

}  // namespace

InterfaceKeeper::InterfaceKeeper(Names given)
    : names(std::move(given)), wakeEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!wakeEvent) {
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
    }
}

void InterfaceKeeper::start(Netlink& netlink, const std::optional<Netlink::Link>& link) {
    knownIndex = link ? link->index : 0;
    usableInterface = usable(netlink, link);
    thread = std::thread([this] { run(); });
}

std::uint64_t InterfaceKeeper::want(const std::vector<std::string>& command) {
    const std::lock_guard lock(mutex);
    if (command != wantedCommand) {
        wantedCommand = command;
        ++wantedNumber;
        wake();
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
        wake();
    }
    settled.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
}

void InterfaceKeeper::wake() const {
    const std::uint64_t one = 1;
    // Fails only when it is awake already, some 2^64 times.
    [[maybe_unused]] const ssize_t written = ::write(wakeEvent.get(), &one, sizeof one);
}

bool InterfaceKeeper::isWanted(std::uint64_t number) {
    const std::lock_guard lock(mutex);
    return number == wantedNumber && !isEnding;
}

void InterfaceKeeper::run() {
    ::pthread_setname_np(::pthread_self(), names.thread.c_str());
    DhcpClient client(names.client, [&](std::uint64_t wishNumber, std::uint64_t start,
                                        const std::string& message) {
        if (receive(wishNumber, start, message)) {
            client.works();
        }
    });
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
std::uint64_t InterfaceKeeper::passWish(DhcpClient& client) {
    const std::lock_guard lock(mutex);
    DhcpClient::Wish wish{wantedNumber, usableInterface, {}};
    if (usableInterface != 0 && !isEnding) {
        wish.command = wantedCommand;
    }
    client.want(wish);
    return wantedNumber;
}

void InterfaceKeeper::wait(const DhcpClient& client) {
    std::vector<pollfd> descriptors{{wakeEvent.get(), POLLIN, 0},
                                    {monitor.descriptor(), POLLIN, 0}};
    client.addTo(descriptors);
    const auto due = client.due();
    // Interrupted by a signal: looking too early does no harm.
    if (::poll(descriptors.data(), descriptors.size(), due ? millisecondsUntil(*due) : -1) <= 0) {
        return;
    }
    if (descriptors[0].revents != 0) {
        std::uint64_t ignored = 0;
        [[maybe_unused]] const ssize_t size = ::read(wakeEvent.get(), &ignored, sizeof ignored);
    }
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
