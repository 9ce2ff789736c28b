#pragma once

#include "mngctl/commands/ipv4.h"
#include "mngctl/session.h"

namespace mngctl {

/// The IPv4 state of the board's management interface.
struct Addressing {
    rpcNetworkInfo info{};
    unsigned gateway = 0;  ///< host byte order; 0 if there is no default route

    /// The interface's address with its mask; zeros if it has none.
    Ipv4Network network() const { return {info.ipAddress, info.netmask}; }
    bool hasAddress() const { return info.ipAddress != 0; }
};

Addressing readAddressing(Session& session);
rpcNetworkInfo readNetworkInfo(Session& session);

/// Whether answers find their way from an interface in `network` to `address`, directly or through
/// the gateway.
bool reaches(const Ipv4Network& network, unsigned gateway, unsigned address);

/// An address as JSON, or null for 0.
Json addressOrNull(unsigned address);

/// "none" for 0.
std::string addressOrNone(unsigned address);

/// "the gateway 192.0.2.254" or "no gateway".
std::string describeGateway(unsigned gateway);

}  // namespace mngctl
