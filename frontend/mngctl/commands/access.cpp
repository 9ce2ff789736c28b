#include "mngctl/commands/accessRules.h"
#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/consent.h"
#include "mngctl/commands/managementInterface.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

std::string countOf(std::size_t rules) {
    return rules == 1 ? "1 rule" : fmt::format("{} rules", rules);
}

void show(Session& session) {
    AccessList list = readAccessList(session);
    readHits(session, list);
    session.print(jsonOf(list), tableOf(list));
}

/// The list restricts those who come in over the management interface.
void askBefore(Session& session, const AccessList& after) {
    const auto way = wayIn();
    if (!way || session.settings.yes) {
        return;
    }
    const AccessAnswer answer = evaluate(after, way->client);
    if (answer.admitted || way->server != readNetworkInfo(session).ipAddress) {
        return;
    }
    askBeforeCuttingOff(session, *way, "with this change it is " + describeAnswer(after, answer));
}

void carryOutAndShow(Session& session, const Change& change) {
    carryOut(change, [&] { return "a list of " + countOf(readAccessList(session).rules.size()); });
    readBack(session, show);
}

// Adding a rule.

struct NewRule {
    bool permit;
    std::string network;
    std::optional<std::string> at;  ///< nothing to append
};

Ipv4Network parseRuleNetwork(Session& session, const std::string& text) {
    const Ipv4Network given = parseNetwork(text);
    const Ipv4Network network = given.withoutHostBits();
    if (network == Ipv4Network{0, maskOfLength(prefixLengthMaximum)}) {
        throw UsageError("0.0.0.0/32 is nobody's address: 0.0.0.0/0 stands for everybody");
    }
    if (given != network) {
        session.streams.err << fmt::format("mngctl: {} has host bits; the rule is for {}\n",
                                           formatNetwork(given), formatNetwork(network));
    }
    return network;
}

void checkRoom(const AccessList& list, unsigned position) {
    const std::size_t count = list.rules.size();
    if (count >= accessRulesMaximum) {
        throw Refused(fmt::format(
            "the list is full: it has {}, and the board keeps no more; remove one first",
            countOf(count)));
    }
    // The board would put the rule at the end.
    if (position > count + 1) {
        throw UsageError(fmt::format("--at {}: the list has {}, so the last place is {}", position,
                                     countOf(count), count + 1));
    }
}

void add(Session& session, const NewRule& wanted) {
    const unsigned position =
        wanted.at ? parseUpTo(accessRulesMaximum, "--at: expected a position", *wanted.at) : 0;
    const AccessRule rule{parseRuleNetwork(session, wanted.network), wanted.permit};
    AccessList list = readAccessList(session);
    checkRoom(list, position);
    const bool append = position == 0 || position > list.rules.size();
    const auto place = append ? list.rules.end() : list.rules.begin() + (position - 1);
    list.rules.insert(place, rule);
    askBefore(session, list);
    carryOutAndShow(session, {"add the rule " + describeRule(rule),
                              request(session, rpc_network_add_ra_rule_1,
                                      {rule.network.address, rule.network.mask,
                                       rule.permit ? TRUE : FALSE, append ? 0 : position})});
}

void addAdding(Command& noun, bool permit) {
    const std::string verb = answerName(permit);
    Command& command = noun.addCommand(
        verb, fmt::format("Add a rule that {} a network", permit ? "admits" : "denies"),
        {"access " + verb + " 192.0.2.0/24", "access " + verb + " 192.0.2.7 --at 1",
         "access " + verb + " 0.0.0.0/0            (everybody)"});
    const Argument& network =
        command.addArgument("NETWORK", "ADDRESS/PREFIX, or the address of one host");
    const auto at = std::make_shared<std::optional<std::string>>();
    command.addOption("--at", *at, "N", "Place in the list, from 1; at the end if left out");
    command.addYesFlag();
    command.setAction(
        [&network, at, permit](Session& session) { add(session, {permit, network.one(), *at}); });
}

// Removing rules.

void remove(Session& session, const std::string& text) {
    const unsigned position = parseUpTo(accessRulesMaximum, "expected a position", text);
    AccessList list = readAccessList(session);
    const std::size_t count = list.rules.size();
    // The board would take what lies behind the list for a rule.
    if (position > count) {
        throw UsageError(fmt::format("there is no rule {}: the list {}", position,
                                     count == 0 ? "is empty" : "has " + countOf(count)));
    }
    const AccessRule removed = list.rules[position - 1];
    list.rules.erase(list.rules.begin() + (position - 1));
    askBefore(session, list);
    carryOutAndShow(session, {fmt::format("remove rule {} ({})", position, describeRule(removed)),
                              request(session, rpc_network_remove_ra_rule_1, position)});
}

void clear(Session& session) {
    carryOutAndShow(session,
                    {"remove all rules", request(session, rpc_network_remove_ra_rule_1, 0)});
}

void test(Session& session, const std::string& text) {
    const unsigned address = parseIpv4(text);
    const AccessList list = readAccessList(session);
    const AccessAnswer answer = evaluate(list, address);
    Json rule;
    if (answer.position != 0) {
        const AccessRule& found = list.rules[answer.position - 1];
        rule = Json{{"position", answer.position},
                    {"answer", answerName(found.permit)},
                    {"network", formatNetwork(found.network)}};
    }
    session.print(
        Json{{"address", formatIpv4(address)}, {"admitted", answer.admitted}, {"rule", rule}},
        fmt::format("{}: {}\n", formatIpv4(address), describeAnswer(list, answer)));
}

}  // namespace

void addAccess(CommandTree& tree) {
    Command& noun = tree.addNoun("access", "Who may reach the management interface",
                                 {"access list", "access permit 192.0.2.0/24", "access remove 2"});

    noun.addShow("list", "Show the rules, and what they matched", show);

    addAdding(noun, true);
    addAdding(noun, false);

    Command& removeCommand = noun.addCommand("remove", "Remove the rule at a place of the list",
                                             {"access remove 2", "access remove 2 --yes"});
    const Argument& position = removeCommand.addArgument("N", "Place in the list, from 1");
    removeCommand.addYesFlag();
    removeCommand.setAction([&position](Session& session) { remove(session, position.one()); });

    noun.addCommand("clear", "Remove all rules: everybody is admitted then", {"access clear"},
                    clear);

    Command& testCommand =
        noun.addCommand("test", "Tell which rule answers to an address, and how",
                        {"access test 192.0.2.7", "access test 192.0.2.7 --json"});
    const Argument& address = testCommand.addArgument("ADDRESS", "IPv4 address to test");
    testCommand.setAction([&address](Session& session) { test(session, address.one()); });
}

}  // namespace mngctl
