#pragma once

#include "mngctl/commandTree.h"
#include "mngctl/commands/changes.h"
#include "mngctl/session.h"

#include <string>
#include <string_view>

namespace mngctl {

// The SNMP agent's settings as the board tells them.

/// {"contact": ..., "location": ..., "name": ...}
Json readSnmpSystem(Session& session);
/// [{"name": ..., "access": "read-only"}, ...], without empty entries.
Json readSnmpCommunities(Session& session);
/// {"port": ..., "managers": [{"address": ..., "community": ...}, ...]}, without empty entries.
Json readSnmpTraps(Session& session);

std::string describeSnmpSystem(const Json& system);
std::string describeSnmpCommunities(const Json& communities);
std::string describeSnmpTraps(const Json& traps);

/// A community as the board takes it: 1 to `longest` visible ASCII characters. Throws UsageError,
/// whose text leaves it out: it is as good as a password.
void checkCommunity(std::string_view text, std::size_t longest);

void addSnmpCommunity(Command& snmp);
void addSnmpTrap(Command& snmp);

}  // namespace mngctl
