#pragma once

#include "platform/acl.h"

#include <optional>
#include <string>
#include <vector>

namespace bridge {

struct AccessRule {
    unsigned int id;
    bool permit;
    std::optional<zubridge_acl_condition> condition;  ///< without one, it matches nothing
};

/// Where a list is in force.
struct Assignment {
    int portId;
    std::string interface;  ///< Linux name of the port's interface
};

/// An access list as a value: rules in the order in which they are asked. A rule's sequence number
/// is its place in that order, counted from 1.
class AccessList {
public:
    /// The number tells the lists of a process apart, in the order in which they were made.
    AccessList(unsigned int number, std::string name);

    unsigned int number() const { return listNumber; }
    const std::string& name() const { return listName; }
    const std::vector<AccessRule>& rules() const { return list; }

    /// Rules from the place on move one back. 0, and a place behind the end, is the end.
    void insert(const AccessRule& rule, unsigned int sequenceNumber);
    void move(unsigned int ruleId, unsigned int sequenceNumber);

    // These throw Failure for a rule that the list does not have.
    void erase(unsigned int ruleId);
    /// Throws Failure when the rule has its condition.
    void addCondition(unsigned int ruleId, const zubridge_acl_condition& condition);
    /// A rule's one condition has number 1. Throws Failure when it has none.
    void removeCondition(unsigned int ruleId, unsigned int number);
    unsigned int sequenceNumberOf(unsigned int ruleId) const;

    /// Throws Failure when the list is not in force on that port.
    void withdraw(int portId);

    /// The rule that was made first: the product's catch-all, which it keeps at the end.
    bool isCatchAll(const AccessRule& rule) const { return rule.id == firstRuleId; }

    std::optional<Assignment> assignment;

private:
    AccessRule& rule(unsigned int ruleId);
    std::size_t indexOf(unsigned int ruleId) const;

    unsigned int listNumber;
    std::string listName;
    unsigned int firstRuleId = 0;
    std::vector<AccessRule> list;
};

}  // namespace bridge
