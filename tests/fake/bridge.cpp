// The bridge, as far as the product imports it.

#include "fake/Platform.h"
#include "fake/describe.h"
#include "platform/zubridge.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

using fake::BridgeLists;
using fake::Platform;
using fake::quoted;

struct ACLContainer_t::Lists {
    std::string description;
};

namespace {

BridgeLists::List* listNamed(const std::string& name) {
    auto& lists = Platform::current().accessLists.lists;
    const auto found = lists.find(name);
    return found == lists.end() ? nullptr : &found->second;
}

auto placeOf(BridgeLists::List& list, unsigned int ruleId) {
    return std::ranges::find(list.rules, ruleId, &BridgeLists::Rule::id);
}

/// 0 and what lies past the end mean the end.
auto placeAt(BridgeLists::List& list, unsigned int sequenceNumber) {
    const bool isInside = sequenceNumber != 0 && sequenceNumber <= list.rules.size();
    return isInside ? list.rules.begin() + (sequenceNumber - 1) : list.rules.end();
}

constexpr auto whatever = [](const auto&) { return true; };

/// A call on a list; it is refused when there is no such list, or none that is fit for it.
template <class Work, class Fit = decltype(whatever)>
int onList(const char* function, const std::string& name, const std::string& arguments, Work work,
           Fit isFit = whatever) {
    BridgeLists::List* const list = listNamed(name);
    const std::string all = quoted(name) + (arguments.empty() ? "" : ", " + arguments);
    if (list == nullptr || !isFit(*list)) {
        return Platform::current().refuse(function, all);
    }
    return Platform::current().call(function, all, [&] { return work(*list); });
}

/// A call on a rule of a list; it is refused when there is no such rule, or none that is fit for
/// it.
template <class Work, class Fit = decltype(whatever)>
int onRule(const char* function, const std::string& name, unsigned int ruleId,
           const std::string& arguments, Work work, Fit isFit = whatever) {
    BridgeLists::List* const list = listNamed(name);
    const std::string all =
        fmt::format("{}, {}{}", quoted(name), ruleId, arguments.empty() ? "" : ", " + arguments);
    if (list == nullptr || placeOf(*list, ruleId) == list->rules.end() ||
        !isFit(*placeOf(*list, ruleId))) {
        return Platform::current().refuse(function, all);
    }
    return Platform::current().call(function, all,
                                    [&] { return work(*list, placeOf(*list, ruleId)); });
}

}  // namespace

ACLContainer_t::ACLContainer_t(const std::string& bridge, const std::string& kind)
    : lists(std::make_unique<Lists>(Lists{fmt::format("{}, {}", quoted(bridge), quoted(kind))})) {
    Platform::current().journal.write(fmt::format("ACLContainer_t({})", lists->description));
}

ACLContainer_t::~ACLContainer_t() {
    Platform::current().journal.write(fmt::format("~ACLContainer_t({})", lists->description));
}

int ACLContainer_t::createACL(const std::string& name, aclType_t type) {
    const std::string arguments = fmt::format("{}, {}", quoted(name), static_cast<int>(type));
    if (listNamed(name) != nullptr) {
        return Platform::current().refuse("createACL", arguments);
    }
    return Platform::current().call("createACL", arguments,
                                    [&] { Platform::current().accessLists.lists[name] = {}; });
}

int ACLContainer_t::deleteACL(const std::string& name) {
    return onList("deleteACL", name, "",
                  [&](BridgeLists::List&) { Platform::current().accessLists.lists.erase(name); });
}

int ACLContainer_t::createRule(const std::string& name, bool permit, unsigned int& ruleId,
                               unsigned int sequenceNumber) {
    return onList("createRule", name,
                  fmt::format("{}, {}", permit ? "permit" : "deny", sequenceNumber),
                  [&](BridgeLists::List& list) {
                      ruleId = Platform::current().accessLists.nextId++;
                      list.rules.insert(placeAt(list, sequenceNumber), {ruleId, permit, {}});
                      return std::to_string(ruleId);
                  });
}

int ACLContainer_t::delRuleById(const std::string& name, unsigned int ruleId) {
    return onRule("delRuleById", name, ruleId, "",
                  [](BridgeLists::List& list, auto rule) { list.rules.erase(rule); });
}

int ACLContainer_t::addCondition(const std::string& name, unsigned int ruleId,
                                 const zubridge_acl_condition& condition) {
    return onRule(
        "addCondition", name, ruleId, fake::describe(condition),
        [&](BridgeLists::List&, auto rule) { rule->conditions.push_back(condition); },
        [](const BridgeLists::Rule& rule) { return rule.conditions.empty(); });
}

int ACLContainer_t::delCondition(const std::string& name, unsigned int ruleId,
                                 unsigned int number) {
    return onRule(
        "delCondition", name, ruleId, std::to_string(number),
        [&](BridgeLists::List&, auto rule) {
            rule->conditions.erase(rule->conditions.begin() + (number - 1));
        },
        [&](const BridgeLists::Rule& rule) {
            return number != 0 && number <= rule.conditions.size();
        });
}

int ACLContainer_t::changeRuleSequenceNumber(const std::string& name, unsigned int ruleId,
                                             unsigned int sequenceNumber) {
    return onRule("changeRuleSequenceNumber", name, ruleId, std::to_string(sequenceNumber),
                  [&](BridgeLists::List& list, auto rule) {
                      const BridgeLists::Rule moved = std::move(*rule);
                      list.rules.erase(rule);
                      list.rules.insert(placeAt(list, sequenceNumber), moved);
                  });
}

int ACLContainer_t::assignACL(const std::string& name, int portId, bool outgoing,
                              unsigned int priority) {
    const auto holdsPort = [portId](const auto& each) { return each.second.port == portId; };
    return onList(
        "assignACL", name, fmt::format("{}, {}, {}", portId, outgoing, priority),
        [&](BridgeLists::List& list) { list.port = portId; },
        [&](const BridgeLists::List& list) {
            return !list.port &&
                   std::ranges::none_of(Platform::current().accessLists.lists, holdsPort);
        });
}

int ACLContainer_t::deassignACL(const std::string& name, int portId, bool outgoing) {
    return onList(
        "deassignACL", name, fmt::format("{}, {}", portId, outgoing),
        [](BridgeLists::List& list) { list.port.reset(); },
        [&](const BridgeLists::List& list) { return list.port == portId; });
}

int ACLContainer_t::getACLRule(const std::string& name, unsigned int ruleId,
                               aclRule_t& rule) const {
    return onRule("getACLRule", name, ruleId, "", [&](BridgeLists::List& list, auto found) {
        rule.sequenceNumber = static_cast<unsigned int>(found - list.rules.begin()) + 1;
        rule.permit = found->permit;
        rule.conditions = found->conditions;
        return fmt::format("{} {}", rule.sequenceNumber, rule.permit ? "permit" : "deny");
    });
}

zubridge::zubridge() : BLEntity("bridge"), acls("br0", "acl") {}
zubridge::~zubridge() = default;
void zubridge::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}
void zubridge::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}
int zubridge::start() { return 1; }
int zubridge::applyDefaultSettings() { return 1; }
int zubridge::stop() { return 1; }
void zubridge::getDependencies(std::list<std::string>& names) { names.clear(); }
ACLContainer_t& zubridge::aclContainer() { return acls; }

int zubridge::mngSystemMacGet(const zuHandle_t& handle, unsigned char* mac) {
    const bool isDefault = std::ranges::all_of(handle.bytes, [](auto byte) { return byte == 0; });
    return Platform::current().call("mngSystemMacGet", isDefault ? "" : "another handle", [&] {
        std::ranges::copy(Platform::current().ont.systemMac, mac);
    });
}

int zubridge::gponOntMngVlanSet(unsigned int vlanId) {
    return Platform::current().call("gponOntMngVlanSet", std::to_string(vlanId),
                                    [&] { Platform::current().ont.vlanId = vlanId; });
}

int zubridge::gponOntMngVlanGet(unsigned int* vlanId) {
    return Platform::current().call("gponOntMngVlanGet", "", [&] {
        *vlanId = Platform::current().ont.vlanId;
        return std::to_string(*vlanId);
    });
}

template class singleton<zubridge>;
