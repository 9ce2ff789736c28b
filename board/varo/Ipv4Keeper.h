#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "board/varo/Configuration.h"
#include "board/varo/Descriptor.h"
#include "board/varo/DhcpClient.h"
#include "board/varo/Lease.h"
#include "board/varo/Library.h"
#include "board/varo/LinkMonitor.h"
#include "board/varo/Netlink.h"

namespace varo {

/// Looks after the management interface on a thread of its own: runs the DHCP client and puts its
/// leases into force, and puts what is stored into force again when the interface comes back.
///
/// The thread changes things as any caller does, with a Library::Change. So nobody may wait for it
/// while holding one.
class Ipv4Keeper {
public:
    /// Watches the interface from here on; acts after start. Throws.
    explicit Ipv4Keeper(const Configuration& configuration);
    ~Ipv4Keeper();
    Ipv4Keeper(const Ipv4Keeper&) = delete;
    Ipv4Keeper& operator=(const Ipv4Keeper&) = delete;

    /// Starts the thread. What is stored is in force on the interface with this index; 0 when there
    /// is no interface.
    void start(int index);

    /// The client that is to run; empty for none. With a Library::Change held, so that no report of
    /// the client before is put into force any more. Returns the number of this wish.
    std::uint64_t want(const std::vector<std::string>& command);
    /// The number of the last wish.
    std::uint64_t wish();
    /// Waits until no other client is running, up to a few seconds. False when they have passed.
    bool awaitSettled(std::uint64_t number);

    /// Takes the alarm back that no server answers; false when there was none.
    bool takeAlarmBack() { return alarm.exchange(false); }

    /// Ends the client and the thread. For any thread but its own, without a Library::Change.
    void end();

private:
    const std::string interface;
    LinkMonitor monitor;
    Descriptor wakeEvent;
    std::thread thread;

    std::mutex mutex;  ///< protects what follows
    std::condition_variable settled;
    std::vector<std::string> wantedCommand;
    std::uint64_t wantedNumber = 0;
    std::uint64_t settledNumber = 0;
    bool isEnding = false;

    std::atomic<bool> alarm{false};  ///< no DHCP server answers

    // The thread's own.
    int knownIndex = 0;
    std::optional<Lease> lease;
    std::uint64_t leaseHolder = 0;  ///< which start of the client has reported it

    void wake() const;
    void run();
    void wait(const DhcpClient& client);
    std::uint64_t passWish(DhcpClient& client);
    void look();
    void applyAgain(Library::Change& change, Netlink& netlink, const Netlink::Link& link);

    bool receive(std::uint64_t wishNumber, std::uint64_t start, const std::string& message);
    void applyReport(Library::Change& change, std::uint64_t start, const DhcpReport& report);
    void applyLease(Library::Change& change, std::uint64_t start, const DhcpReport& report);
    void loseLease(Library::Change& change);
    void serverIsSilent(Library::Change& change);
    void serverResponds();
    std::uint32_t gatewayOf(Library::Change& change) const;
    bool isWanted(std::uint64_t number);
};

}  // namespace varo
