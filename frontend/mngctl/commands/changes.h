#pragma once

#include "mngctl/session.h"

#include <functional>

namespace mngctl {

/// One call that changes something.
struct Change {
    std::string what;  ///< "set the IPv4 name servers"
    std::function<rpcNetworkResult()> make;
};

/// ", result -6 (invalid address)" and the like.
std::string describeOutcome(int outcome);

/// Makes the changes in order. Throws Refused at the first that the board refuses; the text, as
/// that of any other failure, tells which changes were made before it.
void carryOut(std::span<const Change> changes);

/// Shows what the board says after a change, unless --quiet is given. The change is done by then: a
/// failure to read is reported, but does not fail the command.
void readBack(Session& session, const std::function<void()>& show);

}  // namespace mngctl
