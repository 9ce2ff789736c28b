#pragma once

#include "mngctl/session.h"

#include <functional>

namespace mngctl {

/// One call that changes something.
struct Change {
    std::string what;  ///< "set the IPv4 name servers"
    std::function<rpcNetworkResult()> make;
};

/// A call of the network program with its argument, for a Change. The session outlives it, and so
/// do the texts that the argument points to.
template <class Argument>
std::function<rpcNetworkResult()> request(Session& session, Stub<Argument, rpcNetworkResult> stub,
                                          std::type_identity_t<Argument> argument) {
    return [&session, stub, argument] { return session.ask(stub, argument); };
}

/// The same for a procedure without an argument.
std::function<rpcNetworkResult()> request(Session& session, Stub<void, rpcNetworkResult> stub);

/// "result -6 (invalid address)" and the like.
std::string describeOutcome(int outcome);

/// Makes the changes in order. Throws Refused at the first that the board refuses; the text, as
/// that of any other failure, tells which changes were made before it.
void carryOut(std::span<const Change> changes);

/// Makes one change. If the board refuses it, the text also tells what `inForce` says of the state
/// after it: a change that failed part-way is not taken back.
void carryOut(const Change& change, const std::function<std::string()>& inForce);

/// Makes one change. What `explain` says, read from the board, is added to a refusal; nothing is
/// if it throws Failure.
void carryOutOrExplain(const Change& change, const std::function<std::string()>& explain);

/// Shows what the board says after a change, unless --quiet is given. The change is done by then: a
/// failure to read is reported, but does not fail the command.
void readBack(Session& session, const std::function<void(Session&)>& show);

}  // namespace mngctl
