#include "mngctl/commands/changes.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <cstring>

namespace mngctl {

std::function<rpcNetworkResult()> request(Session& session, Stub<void, rpcNetworkResult> stub) {
    return [&session, stub] { return session.ask(stub); };
}

std::string describeOutcome(int outcome) {
    switch (outcome) {
        case rpcNetworkFailed:
            return fmt::format("result {} (failed)", outcome);
        case rpcNetworkInvalidAddress:
            return fmt::format("result {} (invalid address)", outcome);
        case rpcNetworkUnknownAddressType:
            return fmt::format("result {} (unknown address type)", outcome);
        default:
            return fmt::format("result {}", outcome);
    }
}

void carryOut(std::span<const Change> changes) {
    std::string before;
    for (const Change& change : changes) {
        try {
            const rpcNetworkResult result = change.make();
            int outcome = 0;
            std::memcpy(&outcome, &result, sizeof outcome);
            if (outcome != rpcNetworkDone) {
                throw Refused(fmt::format("the board refused to {}: {}", change.what,
                                          describeOutcome(outcome)));
            }
        } catch (const Failure& failure) {
            if (before.empty()) {
                throw;
            }
            throw Failure(failure.exit(),
                          fmt::format("{}; done before that: {}", failure.what(), before));
        }
        before += (before.empty() ? "" : ", ") + change.what;
    }
}

void carryOut(const Change& change, const std::function<std::string()>& inForce) {
    carryOutOrExplain(change, [&] {
        try {
            return "now in force: " + inForce();
        } catch (const Failure& failure) {
            return fmt::format("what is in force now could not be read: {}", failure.what());
        }
    });
}

void carryOutOrExplain(const Change& change, const std::function<std::string()>& explain) {
    try {
        carryOut(std::span(&change, 1));
    } catch (const Refused& refusal) {
        std::string reason;
        try {
            reason = explain();
        } catch (const Failure&) {
            // The refusal is what counts.
        }
        throw Refused(refusal.what() + (reason.empty() ? reason : "; " + reason));
    }
}

void readBack(Session& session, const std::function<void(Session&)>& show) {
    if (session.settings.quiet) {
        return;
    }
    try {
        show(session);
    } catch (const Failure& failure) {
        session.streams.err << fmt::format(
            "mngctl: the change is made, but reading it back failed: {}\n", failure.what());
    }
}

}  // namespace mngctl
