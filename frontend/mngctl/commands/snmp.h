#pragma once

#include "mngctl/command.h"

#include <string_view>

namespace mngctl {

// The parts of the noun snmp.

void addSnmpTrap(Command& snmp);

/// {"port": ..., "managers": [{"address": ..., "community": ...}, ...]}, without empty entries.
Json readSnmpTraps(Session& session);
std::string describeSnmpTraps(const Json& traps);

/// Why the board refused a change of the agent, where nothing that it tells explains it: it is
/// stored, or not.
std::string otherCause(bool isStored);

/// The texts of two fields of every entry, in columns.
std::string columns(const Json& list, const char* left, const char* right);

/// A community as the board takes it: 1 to `longest` visible ASCII characters. Throws UsageError,
/// whose text leaves it out: it is as good as a password.
void checkCommunity(std::string_view text, std::size_t longest);

}  // namespace mngctl
