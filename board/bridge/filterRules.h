#pragma once

#include "board/bridge/AccessList.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace bridge {

/// A rule of the kernel's packet filter. The label is its comment there, and says all that its
/// expression depends on: rules with the same label are the same.
struct FilterRule {
    std::string label;
    nlohmann::json expression;
    std::string counter;  ///< name of its counter, empty for none
};

struct FilterChain {
    std::string name;
    std::vector<FilterRule> rules;
};

/// The base chain, at the input hook.
constexpr const char* inputChain = "input";

/// The name of a rule's counter. It is an object of its own in the kernel's table, so that it
/// outlives the replacement of the rule by another expression or at another place.
std::string counterName(unsigned int ruleId);

/// The chains that make lists true: one for each list and, at the end, the base chain, which sends
/// packets of the ports that a list is assigned to through the list's chain. Only IPv4 is filtered,
/// and not what answers a connection that this machine has opened.
std::vector<FilterChain> filterChains(const std::vector<AccessList>& lists);

}  // namespace bridge
