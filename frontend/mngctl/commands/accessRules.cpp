#include "mngctl/commands/accessRules.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

namespace mngctl {

namespace {

bool isSame(const AccessRule& rule, const bllRuleCounter& counter) {
    return rule.network == Ipv4Network{counter.address, counter.netmask} &&
           rule.permit == (counter.permit != 0);
}

/// Whether the counters are those of these rules, followed by the catch-all.
bool belongTo(const std::vector<AccessRule>& rules, std::span<const bllRuleCounter> counters) {
    return counters.size() == rules.size() + 1 &&
           std::ranges::equal(rules, counters.first(rules.size()), isSame) &&
           isSame({{0, 0}, false}, counters.back());
}

Hits hitsOf(const bllRuleCounter& counter) { return {counter.packets, counter.bytes}; }

Json withHits(Json json, const std::optional<Hits>& hits) {
    json["packets"] = hits ? Json(hits->packets) : Json();
    json["bytes"] = hits ? Json(hits->bytes) : Json();
    return json;
}

}  // namespace

AccessList readAccessList(Session& session) {
    AccessList list;
    for (unsigned index = 0; index < accessRulesMaximum; ++index) {
        const auto answer = session.ask(rpc_network_iterate_rules_1, index);
        int outcome = 0;
        std::memcpy(&outcome, &answer.result, sizeof outcome);
        // There is no other sign of the end.
        if (outcome != rpcNetworkDone) {
            break;
        }
        list.rules.push_back({{answer.rule.ipAddress, answer.rule.netmask}, answer.rule.flag != 0});
    }
    return list;
}

void readHits(Session& session, AccessList& list) {
    if (list.rules.empty()) {
        return;
    }
    Decoded<bllRuleCounters> answer(xdr_bllRuleCounters);
    try {
        session.client.call(controlProgram, bll_control_rule_counters_1, *answer);
    } catch (const Failure&) {
        return;  // an older board, or one without a control program
    }
    const std::span<const bllRuleCounter> counters(answer->rules.rules_val,
                                                   answer->rules.rules_len);
    if (answer->status != 0 || !belongTo(list.rules, counters)) {
        return;
    }
    for (std::size_t i = 0; i < list.rules.size(); ++i) {
        list.rules[i].hits = hitsOf(counters[i]);
    }
    list.otherwise = hitsOf(counters.back());
}

AccessAnswer evaluate(const AccessList& list, unsigned address) {
    for (std::size_t i = 0; i < list.rules.size(); ++i) {
        if (list.rules[i].network.contains(address)) {
            return {list.rules[i].permit, static_cast<unsigned>(i + 1)};
        }
    }
    return {list.rules.empty(), 0};
}

std::string answerName(bool permit) { return permit ? "permit" : "deny"; }

std::string describeRule(const AccessRule& rule) {
    return fmt::format("{} {}", answerName(rule.permit), formatNetwork(rule.network));
}

std::string describeAnswer(const AccessList& list, const AccessAnswer& answer) {
    const std::string word = answer.admitted ? "admitted" : "denied";
    if (answer.position != 0) {
        return fmt::format("{} by rule {} ({})", word, answer.position,
                           describeRule(list.rules[answer.position - 1]));
    }
    return word + (answer.admitted ? ", as there is no rule" : ", as no rule matches");
}

std::string tableOf(const AccessList& list) {
    if (list.rules.empty()) {
        return "no rule: everybody is admitted\n";
    }
    std::string text = fmt::format("{:>3}  {:<6}  ", "No.", "Answer");
    text += list.otherwise ? fmt::format("{:<18}  {:>12}  {:>15}\n", "Network", "Packets", "Bytes")
                           : "Network\n";
    for (std::size_t i = 0; i < list.rules.size(); ++i) {
        const AccessRule& rule = list.rules[i];
        const std::string network = formatNetwork(rule.network);
        text += fmt::format("{:>3}  {:<6}  ", i + 1, answerName(rule.permit));
        text += rule.hits ? fmt::format("{:<18}  {:>12}  {:>15}\n", network, rule.hits->packets,
                                        rule.hits->bytes)
                          : network + "\n";
    }
    return text + "everything else: denied" +
           (list.otherwise ? fmt::format(" ({} packets, {} bytes)\n", list.otherwise->packets,
                                         list.otherwise->bytes)
                           : "\n");
}

Json jsonOf(const AccessList& list) {
    Json rules = Json::array();
    for (std::size_t i = 0; i < list.rules.size(); ++i) {
        const AccessRule& rule = list.rules[i];
        rules.push_back(withHits(Json{{"position", i + 1},
                                      {"answer", answerName(rule.permit)},
                                      {"network", formatNetwork(rule.network)}},
                                 rule.hits));
    }
    return Json{
        {"rules", std::move(rules)},
        {"otherwise", withHits(Json{{"answer", answerName(list.rules.empty())}}, list.otherwise)}};
}

}  // namespace mngctl
