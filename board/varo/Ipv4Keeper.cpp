#include "board/varo/Ipv4Keeper.h"

#include <fmt/format.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <system_error>

#include "board/varo/addressing.h"
#include "board/varo/groups.h"

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

Ipv4Keeper::Ipv4Keeper(const Configuration& configuration)
    : interface(configuration.managementInterface),
      wakeEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!wakeEvent)
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
}

Ipv4Keeper::~Ipv4Keeper() { end(); }

void Ipv4Keeper::start(int index) {
    knownIndex = index;
    thread = std::thread([this] { run(); });
}

std::uint64_t Ipv4Keeper::want(const std::vector<std::string>& command) {
    const std::lock_guard lock(mutex);
    if (command != wantedCommand) {
        wantedCommand = command;
        ++wantedNumber;
        wake();
    }
    return wantedNumber;
}

std::uint64_t Ipv4Keeper::wish() {
    const std::lock_guard lock(mutex);
    return wantedNumber;
}

bool Ipv4Keeper::awaitSettled(std::uint64_t number) {
    std::unique_lock lock(mutex);
    return settled.wait_for(lock, settleLimit, [&] { return settledNumber >= number || isEnding; });
}

void Ipv4Keeper::end() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        wake();
    }
    settled.notify_all();
    if (thread.joinable())
        thread.join();
}

void Ipv4Keeper::wake() const {
    const std::uint64_t one = 1;
    // Fails only when it is awake already, some 2^64 times.
    [[maybe_unused]] const ssize_t written = ::write(wakeEvent.get(), &one, sizeof one);
}

bool Ipv4Keeper::isWanted(std::uint64_t number) {
    const std::lock_guard lock(mutex);
    return number == wantedNumber && !isEnding;
}

void Ipv4Keeper::run() {
    ::pthread_setname_np(::pthread_self(), "varo ipv4");
    DhcpClient client(
        [&](std::uint64_t wishNumber, std::uint64_t start, const std::string& message) {
            if (receive(wishNumber, start, message))
                client.works();
        });
    for (;;) {
        const std::uint64_t taken = passWish(client);
        guarded(call, [&] { client.act(); });
        {
            const std::lock_guard lock(mutex);
            if (client.isSettled())
                settledNumber = taken;
            if (isEnding && !client.isRunning())
                return;
        }
        settled.notify_all();
        wait(client);
    }
}

/// Returns the number of the wish. At the end, and without the interface, no client is to run.
std::uint64_t Ipv4Keeper::passWish(DhcpClient& client) {
    const std::lock_guard lock(mutex);
    DhcpClient::Wish wish{wantedNumber, knownIndex, {}};
    if (knownIndex != 0 && !isEnding)
        wish.command = wantedCommand;
    client.want(wish);
    return wantedNumber;
}

void Ipv4Keeper::wait(const DhcpClient& client) {
    std::vector<pollfd> descriptors{{wakeEvent.get(), POLLIN, 0},
                                    {monitor.descriptor(), POLLIN, 0}};
    client.addTo(descriptors);
    const auto due = client.due();
    // Interrupted by a signal: looking too early does no harm.
    if (::poll(descriptors.data(), descriptors.size(), due ? millisecondsUntil(*due) : -1) <= 0)
        return;
    if (descriptors[0].revents != 0) {
        std::uint64_t ignored = 0;
        [[maybe_unused]] const ssize_t size = ::read(wakeEvent.get(), &ignored, sizeof ignored);
    }
    if (descriptors[1].revents != 0) {
        monitor.drain();
        guarded(call, [&] { look(); });
    }
}

void Ipv4Keeper::look() {
    Netlink netlink;
    const auto link = netlink.link(interface);
    const int index = link ? link->index : 0;
    const bool isNew = index != knownIndex;
    if (isNew && knownIndex != 0)
        Library::instance().log(LOG_WARNING, fmt::format("the interface {} is gone", interface));
    if (isNew && index != 0)
        Library::instance().log(LOG_NOTICE, fmt::format("the interface {} is there", interface));
    knownIndex = index;
    // One that was taken down by hand stays so; taken up again, it has lost its routes.
    if (link && (isNew || link->isUp)) {
        auto change = Library::instance().change();
        if (isNew)
            bringUp(netlink, interface, index);
        applyAgain(change, netlink, *link);
    }
}

void Ipv4Keeper::applyAgain(Library::Change& change, Netlink& netlink, const Netlink::Link& link) {
    const auto [settings, isDhcpOn] = [&] {
        auto session = change.store().session();
        return std::pair(session.read(ipv4Group()), session.read(dhcpGroup()).dhcpEnabled != 0);
    }();
    if (!isDhcpOn) {
        applySettings(netlink, interface, link.index, settings);
        return;
    }
    const auto addresses = netlink.addresses(link.index);
    if (lease && std::find(addresses.begin(), addresses.end(), lease->prefix) != addresses.end())
        makeOnlyGateway(netlink, link.index, gatewayOf(change));
}

}  // namespace varo
