#pragma once

#include "mngctl/commandTree.h"
#include "mngctl/commands/networks.h"

#include <memory>

namespace mngctl {

#define NOUN(add) void add(CommandTree& tree);
#include "mngctl/commands/nouns.def"
#undef NOUN

// What one noun lends to others.

/// The address families that a command is about.
struct Families {
    bool ipv4 = false;
    bool ipv6 = false;

    /// Both, if none was chosen.
    Families orBoth() const { return ipv4 || ipv6 ? *this : Families{true, true}; }
};

/// Adds the flags --ipv4 and --ipv6, the IPv4 or IPv6 `what`.
std::shared_ptr<Families> addFamilyFlags(Command& command, const std::string& what);

/// A setting that each family has: how it is read, and its line for people.
struct FamilySetting {
    Json (*readIpv4)(Session& session);
    Json (*readIpv6)(Session& session);
    std::string (*line)(std::string_view family, const Json& value);
};
void showFamilies(Session& session, const FamilySetting& setting, const Families& families);

// Changes of IPv6, for the commands that take addresses of both families. Each asks before it can
// cut off whoever came in over IPv6, makes the change, and shows what the board says then.

void setIpv6Address(Session& session, const Ipv6Network& wanted);
void setIpv6Gateway(Session& session, const std::string& gateway);
void clearIpv6Gateway(Session& session);

/// A VLAN id, 1 to 4094 (IEEE 802.1Q). Throws UsageError.
unsigned parseVlanId(const std::string& text);

/// The SNTP client's configuration and status as JSON. "status" is null if the board does not know
/// it. Offsets are positive when the server's clock is ahead of the board's.
Json readNtp(Session& session);
/// The same for people.
std::string describeNtp(const Json& json);

/// Adds the option that names the port of the event server, whose default the port holds.
void addEventPortOption(Command& command, std::uint16_t& port);

/// What is to be told where events cannot be followed: what the board says of its web server set.
std::string explainNoChannel(Session& session);

}  // namespace mngctl
