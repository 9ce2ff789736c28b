#include "board/bridge/AccessList.h"

#include "board/bridge/aclChecks.h"
#include "board/bridge/bridgeCodes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace bridge {

AccessList::AccessList(unsigned int number, std::string name)
    : listNumber(number), listName(std::move(name)) {}

void AccessList::insert(const AccessRule& rule, unsigned int sequenceNumber) {
    if (firstRuleId == 0) {
        firstRuleId = rule.id;
    }
    const bool isInside = sequenceNumber != 0 && sequenceNumber <= list.size();
    const std::size_t index = isInside ? sequenceNumber - 1 : list.size();
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), rule);
}

void AccessList::move(unsigned int ruleId, unsigned int sequenceNumber) {
    const AccessRule moved = rule(ruleId);
    erase(ruleId);
    insert(moved, sequenceNumber);
}

void AccessList::erase(unsigned int ruleId) {
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(indexOf(ruleId)));
}

void AccessList::addCondition(unsigned int ruleId, const zubridge_acl_condition& condition) {
    AccessRule& changed = rule(ruleId);
    checkCondition(condition);
    if (changed.condition) {
        throw Failure(conditionExists, fmt::format("rule {} has its condition", ruleId));
    }
    changed.condition = condition;
}

void AccessList::removeCondition(unsigned int ruleId, unsigned int number) {
    AccessRule& changed = rule(ruleId);
    if (number != 1 || !changed.condition) {
        throw Failure(unknownCondition, fmt::format("rule {} has no condition {}", ruleId, number));
    }
    changed.condition.reset();
}

void AccessList::withdraw(int portId) {
    if (!assignment || assignment->portId != portId) {
        throw Failure(notAssigned, fmt::format("it is not assigned to port {}", portId));
    }
    assignment.reset();
}

AccessRule& AccessList::rule(unsigned int ruleId) { return list[indexOf(ruleId)]; }

unsigned int AccessList::sequenceNumberOf(unsigned int ruleId) const {
    return static_cast<unsigned int>(indexOf(ruleId)) + 1;
}

std::size_t AccessList::indexOf(unsigned int ruleId) const {
    const auto found = std::ranges::find(list, ruleId, &AccessRule::id);
    if (found == list.end()) {
        throw Failure(unknownRule, "there is no rule " + std::to_string(ruleId));
    }
    return static_cast<std::size_t>(found - list.begin());
}

}  // namespace bridge
