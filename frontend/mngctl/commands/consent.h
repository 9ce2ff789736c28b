#pragma once

#include "mngctl/session.h"

#include <optional>
#include <string>
#include <string_view>

namespace mngctl {

/// How whoever runs mngctl came onto the board: the two ends of his SSH connection.
template <class Address>
struct Way {
    Address client;  ///< where he sits
    Address server;  ///< the address that he came in over
};
using WayIn = Way<unsigned>;      ///< over IPv4; addresses in host byte order
using WayIn6 = Way<std::string>;  ///< over IPv6; canonical texts

/// Reads the value of SSH_CONNECTION; nothing if it is none of the family.
std::optional<WayIn> parseWayIn(std::string_view connection);
std::optional<WayIn6> parseWayIn6(std::string_view connection);

/// The way in that the environment tells of. Nothing on a console, for instance.
std::optional<WayIn> wayIn();
std::optional<WayIn6> wayIn6();

/// Asks on the terminal whether to go on, unless --yes is given. Throws UsageError if the answer is
/// not yes, and with `withoutTerminal` where there is nobody to ask.
void obtainConsent(Session& session, const std::string& question,
                   const std::string& withoutTerminal);

/// Obtains consent to a change that ends the caller's own connection: `reason` tells how.
void askBeforeCuttingOff(Session& session, const std::string& client, const std::string& reason);
void askBeforeCuttingOff(Session& session, const WayIn& way, const std::string& reason);

}  // namespace mngctl
