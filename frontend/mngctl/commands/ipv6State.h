#pragma once

#include "mngctl/commands/ipv6Network.h"
#include "mngctl/session.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mngctl {

/// The IPv6 state of the board's management interface.
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
/// The same in a few words, for people.
std::string describeInForce(const Ipv6State& state);

// Changes, for the commands that take addresses of both families. Each asks before it can cut off
// whoever came in over IPv6, makes the change, and shows what the board says then.

void setIpv6Address(Session& session, bool yes, const Ipv6Network& wanted);
void setIpv6Gateway(Session& session, bool yes, const std::string& gateway);
void clearIpv6Gateway(Session& session, bool yes);

/// How whoever runs mngctl came onto the board over IPv6; canonical texts.
struct WayIn6 {
    std::string client;
    std::string server;
};

/// Reads the value of SSH_CONNECTION; nothing if it is not of IPv6.
std::optional<WayIn6> parseWayIn6(std::string_view connection);

/// Asks before a change that can take the address away that the caller came in over, unless `yes`.
/// `isAtRisk` tells for which of the board's addresses that is so. Throws UsageError if there is no
/// consent.
void askBeforeLosing(Session& session, bool yes, const std::string& reason,
                     const std::function<bool(const Ipv6Network&)>& isAtRisk);

}  // namespace mngctl
