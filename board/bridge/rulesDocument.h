#pragma once

#include "board/support/StateFile.h"

#include <vector>

namespace bridge {

/// A rule of the remote-access list, addresses in host byte order.
struct SavedRule {
    unsigned int address;
    unsigned int wildcard;
    bool permit;

    bool operator==(const SavedRule&) const = default;
};

/// A rule that could not be put into force when the process started.
struct WaitingRule {
    unsigned int place;  ///< in the list of all stored rules, counted from 1
    SavedRule rule;

    bool operator==(const WaitingRule&) const = default;
};

/// What is stored of the remote-access list.
struct SavedRules {
    std::vector<SavedRule> inForce;    ///< in the order in which they are asked
    std::vector<WaitingRule> waiting;  ///< by rising place

    bool operator==(const SavedRules&) const = default;

    /// All rules, those that wait in their places.
    std::vector<SavedRule> all() const;
};

/// The rules in `remote-access.json`: a JSON document, indented.
extern const support::StateFormat<SavedRules> rulesFormat;

}  // namespace bridge
