#pragma once

#include "board/varo/link/InterfaceKeeper.h"
#include "board/varo/link/Lease.h"
#include "board/varo/varoConfiguration.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace varo {

/// Looks after the management interface's IPv4 address and gateway: puts the leases of the DHCP
/// client into force, takes the interface up when it comes, and puts what is stored into force
/// again then.
class Ipv4Keeper : public InterfaceKeeper {
public:
    /// Throws.
    explicit Ipv4Keeper(const Configuration& configuration);
    ~Ipv4Keeper() override;

    /// Takes the alarm back that no server answers; false when there was none.
    bool takeAlarmBack() { return alarm.exchange(false); }

private:
    std::atomic<bool> alarm{false};  ///< no DHCP server answers

    // The thread's own.
    std::optional<Lease> lease;
    std::uint64_t leaseHolder = 0;  ///< which start of the client has reported it

    std::uint64_t usable(Netlink& netlink, const std::optional<Netlink::Link>& link) override;
    void lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool isNew) override;
    Report read(std::uint64_t start, const std::string& message) override;

    void applyAgain(Library::Change& change, Netlink& netlink, const Netlink::Link& link);
    void applyReport(Library::Change& change, std::uint64_t start, const DhcpReport& report);
    void applyLease(Library::Change& change, std::uint64_t start, const DhcpReport& report);
    void loseLease(Library::Change& change);
    void serverIsSilent(Library::Change& change);
    void serverResponds();
    std::uint32_t gatewayOf(Library::Change& change) const;
};

}  // namespace varo
