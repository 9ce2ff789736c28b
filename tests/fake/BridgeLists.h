#pragma once

#include "platform/acl.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace fake {

/// The access lists of the bridge. A rule's sequence number is its place in the list.
struct BridgeLists {
    struct Rule {
        unsigned int id;
        bool permit;
        std::vector<zubridge_acl_condition> conditions;
    };
    struct List {
        std::vector<Rule> rules;
        std::optional<int> port;
    };

    std::map<std::string, List> lists;
    unsigned int nextId = 101;
};

}  // namespace fake
