#pragma once

#include "mngctl/commands/networks.h"
#include "mngctl/session.h"

#include <vector>

namespace mngctl {

// What the board says of its management interface.

/// Its IPv4 state.
struct Addressing {
    rpcNetworkInfo info{};
    unsigned gateway = 0;  ///< host byte order; 0 if there is no default route

    /// The interface's address with its mask; zeros if it has none.
    Ipv4Network network() const { return {info.ipAddress, info.netmask}; }
    bool hasAddress() const { return info.ipAddress != 0; }
};

Addressing readAddressing(Session& session);
rpcNetworkInfo readNetworkInfo(Session& session);
unsigned readGateway(Session& session);

/// Whether answers find their way from an interface in `network` to `address`, directly or through
/// the gateway.
bool reaches(const Ipv4Network& network, unsigned gateway, unsigned address);

/// {"address": "192.0.2.10" or null, "prefixLength": 24 or null, "netmask": text or null}, of an
/// interface whose address is 0 while it has none. Masks with holes have no length.
Json describeInterface(const Ipv4Network& network);

/// An address as JSON, or null for 0.
Json addressOrNull(unsigned address);
/// "none" for 0.
std::string addressOrNone(unsigned address);

/// "the gateway 192.0.2.254" or "no gateway".
std::string describeGateway(unsigned gateway);

/// Its IPv6 state.
struct Ipv6State {
    std::vector<std::string> addresses;  ///< "2001:db8::7/64", in the board's order
    std::string gateway;                 ///< empty for none
    bool dhcp = false;                   ///< the DHCPv6 client is on
};

Ipv6State readIpv6State(Session& session);

/// {"addresses": [...], "gateway": "..." or null, "dhcp": flag}.
Json describe(const Ipv6State& state);
/// A line for each address, the gateway and the client; each begins with `prefix`.
std::string lines(const Ipv6State& state, const std::string& prefix);

}  // namespace mngctl
