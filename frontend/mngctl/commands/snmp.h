#pragma once

#include "mngctl/command.h"

#include <chrono>
#include <string>
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

struct TrapTarget {
    std::string address;  ///< IPv4, with dots
    int port = 0;
    std::string community;
};

/// How a test went, as far as this side can tell.
struct TrapOutcome {
    enum Kind { Sent, Acknowledged, NoAnswer, Failed } kind = Failed;
    std::string detail{};  ///< of a failure, as snmptrap(1) tells it
};

/// Sends a notification of SNMPv2c from this machine, by snmptrap(1): a trap, which nobody
/// acknowledges, or an inform request (RFC 3416), which the manager does. The community stays out
/// of the arguments that other users see. Throws NoAnswer if the program cannot be run.
TrapOutcome sendTestTrap(const TrapTarget& target, bool inform);

}  // namespace mngctl
