#pragma once

#include "mngctl/commands/networks.h"
#include "mngctl/session.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace mngctl {

/// Rules that the board's remote-access list has room for.
constexpr unsigned accessRulesMaximum = 200;

/// What a rule matched.
struct Hits {
    std::uint64_t packets = 0;
    std::uint64_t bytes = 0;
};

/// One rule: whoever comes from the network is admitted or denied.
struct AccessRule {
    Ipv4Network network;
    bool permit = false;
    std::optional<Hits> hits{};  ///< where the board counts
};

/// The remote-access list. The first rule that matches answers. Whom none matches is denied, but an
/// empty list admits everybody.
struct AccessList {
    std::vector<AccessRule> rules;
    std::optional<Hits> otherwise{};  ///< what none matched, where the board counts
};

/// What the list answers to an address.
struct AccessAnswer {
    bool admitted;
    unsigned position;  ///< of the rule that answers, from 1; 0 if none does
};

/// Reads the rules, without hits.
AccessList readAccessList(Session& session);

/// Adds what the control program counted; leaves the list as it is where there are no counters, or
/// those of other rules.
void readHits(Session& session, AccessList& list);

AccessAnswer evaluate(const AccessList& list, unsigned address);

/// "permit" or "deny".
std::string answerName(bool permit);

/// "permit 192.0.2.0/24".
std::string describeRule(const AccessRule& rule);

/// Who answers, and how: "admitted by rule 1 (permit 192.0.2.0/24)".
std::string describeAnswer(const AccessList& list, const AccessAnswer& answer);

/// A table with a line for the addresses that no rule matches.
std::string tableOf(const AccessList& list);
Json jsonOf(const AccessList& list);

}  // namespace mngctl
