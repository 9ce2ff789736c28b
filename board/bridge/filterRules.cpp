#include "board/bridge/filterRules.h"

#include "board/support/addresses.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace bridge {

namespace {

using nlohmann::json;

/// What is left of a list's name in its chain's: the kernel takes 127 characters.
constexpr std::size_t nameLimit = 60;

constexpr unsigned int allBits = 0xffffffff;

json matchOn(const json& left, const json& right) {
    return {{"match", {{"op", "=="}, {"left", left}, {"right", right}}}};
}

json isIpv4() { return matchOn({{"meta", {{"key", "nfproto"}}}}, "ipv4"); }

/// The inet family's chains see IPv6 as well; to look at an IPv4 field implies the protocol.
json isFrom(const zubridge_acl_condition& condition) {
    const unsigned int mask = ~condition.wildcard;
    const json source = {{"payload", {{"protocol", "ip"}, {"field", "saddr"}}}};
    if (mask == 0 || (condition.address == 0 && condition.wildcard == 0)) {
        return isIpv4();
    }
    if (mask == allBits) {
        return matchOn(source, support::ipv4Text(condition.address));
    }
    return matchOn({{"&", json::array({source, support::ipv4Text(mask)})}},
                   support::ipv4Text(condition.address & mask));
}

FilterRule filterRule(const AccessRule& rule, const zubridge_acl_condition& condition) {
    const std::string counter = counterName(rule.id);
    const char* const verdict = rule.permit ? "accept" : "drop";
    return {
        fmt::format("rule {}: {} {} {}", rule.id, rule.permit ? "permit" : "deny",
                    support::ipv4Text(condition.address), support::ipv4Text(condition.wildcard)),
        json::array({isFrom(condition), {{"counter", counter}}, {{verdict, nullptr}}}), counter};
}

bool isPlain(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// A name that people can type, too; the number makes it the list's own.
std::string chainName(const AccessList& list) {
    std::string name = list.name().substr(0, nameLimit);
    std::ranges::replace_if(name, [](char character) { return !isPlain(character); }, '_');
    return fmt::format("acl{}_{}", list.number(), name);
}

FilterRule answersPass() {
    return {
        "answers to this machine",
        json::array(
            {isIpv4(), matchOn({{"ct", {{"key", "direction"}}}}, "reply"), {{"accept", nullptr}}}),
        ""};
}

FilterRule sendThrough(const std::string& chain, const std::string& interface) {
    return {fmt::format("{} through {}", interface, chain),
            json::array({isIpv4(),
                         matchOn({{"meta", {{"key", "iifname"}}}}, interface),
                         {{"jump", {{"target", chain}}}}}),
            ""};
}

}  // namespace

std::string counterName(unsigned int ruleId) { return fmt::format("rule{}", ruleId); }

std::vector<FilterChain> filterChains(const std::vector<AccessList>& lists) {
    std::vector<FilterChain> chains;
    FilterChain input{inputChain, {answersPass()}};
    for (const AccessList& list : lists) {
        FilterChain chain{chainName(list), {}};
        for (const AccessRule& rule : list.rules()) {
            if (rule.condition) {
                chain.rules.push_back(filterRule(rule, *rule.condition));
            }
        }
        if (list.assignment) {
            input.rules.push_back(sendThrough(chain.name, list.assignment->interface));
        }
        chains.push_back(std::move(chain));
    }
    chains.push_back(std::move(input));
    return chains;
}

}  // namespace bridge
