#pragma once

#include "board/varo/link/InterfaceKeeper.h"
#include "board/varo/link/Lease.h"
#include "board/varo/varoConfiguration.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varo {

/// Looks after the management interface's IPv6 addresses and gateway: puts the leases of the DHCPv6
/// client into force, and puts what is stored into force again when the interface comes back, or
/// up: the kernel takes the addresses of one that goes down away.
class Ipv6Keeper : public InterfaceKeeper {
public:
    /// Throws.
    explicit Ipv6Keeper(const Configuration& configuration);
    ~Ipv6Keeper() override;

private:
    // The thread's own.
    bool wasUsable = false;
    int usedIndex = 0;
    std::uint64_t comings = 0;
    std::vector<Ipv6Address> granted;  ///< addresses that the client has reported
    std::uint64_t grantHolder = 0;     ///< which start of it

    /// With a carrier only: without, the link-local address is not ready, and the client ends.
    /// After each interruption there is another client, which asks whether its lease still holds
    /// here (RFC 8415, section 18.2.3).
    std::uint64_t usable(Netlink& netlink, const std::optional<Netlink::Link>& link) override;
    void lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool isNew) override;
    Report read(std::uint64_t start, const std::string& message) override;

    bool hasLostAddresses(Netlink& netlink, int index) const;
    void applyReport(Library::Change& change, std::uint64_t start, const Dhcp6Report& report);
    void applyLease(Library::Change& change, std::uint64_t start, const Lease6& lease);
    void endLease(Library::Change& change, const Ipv6Address& address);
};

}  // namespace varo
