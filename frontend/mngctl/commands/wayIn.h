#pragma once

#include "mngctl/session.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace mngctl {

/// How whoever runs mngctl came onto the board: the two ends of his SSH connection, in host byte
/// order.
struct WayIn {
    unsigned client;  ///< where he sits
    unsigned server;  ///< the address that he came in over
};

/// The value of SSH_CONNECTION; empty if there is none.
std::string_view sshConnection();

/// The client and the server of such a value, "client port server port".
std::optional<std::pair<std::string, std::string>> connectionEnds(std::string_view connection);

/// Reads the value of SSH_CONNECTION; nothing if it is none of IPv4.
std::optional<WayIn> parseWayIn(std::string_view connection);

/// The way in that the environment tells of. Nothing on a console, for instance.
std::optional<WayIn> wayIn();

/// Asks before a change that ends the caller's own connection, unless `yes`: `reason` tells how.
/// Throws UsageError if there is no consent.
void askBeforeCuttingOff(Session& session, bool yes, const std::string& client,
                         const std::string& reason);
void askBeforeCuttingOff(Session& session, bool yes, const WayIn& way, const std::string& reason);

}  // namespace mngctl
