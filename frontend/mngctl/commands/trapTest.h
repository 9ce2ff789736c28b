#pragma once

#include <chrono>
#include <string>

namespace mngctl {

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
