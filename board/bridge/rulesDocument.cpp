#include "board/bridge/rulesDocument.h"

#include "board/support/addresses.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace bridge {

namespace {

using nlohmann::json;

constexpr int thisVersion = 1;
constexpr int indentation = 4;

constexpr const char* rulesMember = "rules";
constexpr const char* waitingMember = "notInForce";
constexpr const char* placeMember = "place";
constexpr const char* actionMember = "action";
constexpr const char* addressMember = "address";
constexpr const char* wildcardMember = "wildcard";
constexpr const char* permitAction = "permit";
constexpr const char* denyAction = "deny";

json toJson(const SavedRule& rule) {
    return {{actionMember, rule.permit ? permitAction : denyAction},
            {addressMember, support::ipv4Text(rule.address)},
            {wildcardMember, support::ipv4Text(rule.wildcard)}};
}

unsigned int addressIn(const json& rule, const char* member) {
    const auto text = rule.at(member).get<std::string>();
    const auto address = support::parsedIpv4(text);
    if (!address) {
        throw std::runtime_error(std::string(member) + " \"" + text + "\" is not an IPv4 address");
    }
    return *address;
}

SavedRule ruleIn(const json& rule) {
    const auto action = rule.at(actionMember).get<std::string>();
    if (action != permitAction && action != denyAction) {
        throw std::runtime_error("there is no action \"" + action + "\"");
    }
    return {addressIn(rule, addressMember), addressIn(rule, wildcardMember),
            action == permitAction};
}

/// A member that holds rules; a number or a text in its place is not taken for an empty list.
const json& listIn(const json& root, const char* member) {
    const json& list = root.at(member);
    if (!list.is_array()) {
        throw std::runtime_error(std::string(member) + " is not a list");
    }
    return list;
}

std::string formatRules(const SavedRules& rules) {
    json root = {
        {"version", thisVersion}, {rulesMember, json::array()}, {waitingMember, json::array()}};
    for (const SavedRule& rule : rules.inForce) {
        root[rulesMember].push_back(toJson(rule));
    }
    for (const WaitingRule& late : rules.waiting) {
        root[waitingMember].push_back(toJson(late.rule));
        root[waitingMember].back()[placeMember] = late.place;
    }
    return root.dump(indentation) + "\n";
}

SavedRules parseRules(const std::string& document) {
    const json root = support::parseDocument(document, thisVersion);
    SavedRules rules;
    for (const json& rule : listIn(root, rulesMember)) {
        rules.inForce.push_back(ruleIn(rule));
    }
    for (const json& rule : listIn(root, waitingMember)) {
        rules.waiting.push_back({rule.at(placeMember).get<unsigned int>(), ruleIn(rule)});
    }
    std::ranges::stable_sort(rules.waiting, {}, &WaitingRule::place);
    return rules;
}

}  // namespace

std::vector<SavedRule> SavedRules::all() const {
    std::vector<SavedRule> rules = inForce;
    for (const WaitingRule& late : waiting) {
        const std::size_t index = std::clamp<std::size_t>(late.place, 1, rules.size() + 1) - 1;
        rules.insert(rules.begin() + static_cast<std::ptrdiff_t>(index), late.rule);
    }
    return rules;
}

const support::StateFormat<SavedRules> rulesFormat{
    .fileName = "remote-access.json",
    .damageText =
        "{file} is damaged and was renamed to {keptName}; the remote-access list starts "
        "without rules: {reason}",
    .parse = parseRules,
    .format = formatRules,
};

}  // namespace bridge
