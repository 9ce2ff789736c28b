#pragma once

#include <memory>
#include <string>
#include <vector>

#pragma GCC visibility push(default)

/// The condition of a rule. It matches a packet whose source address equals `address` in all bits
/// outside `wildcard`; address 0 with wildcard 0 matches every source. Addresses are in host byte
/// order.
struct zubridge_acl_condition {
    unsigned int kind;      ///< 1: match on a field of the packet
    unsigned int selector;  ///< 20: the IPv4 source address
    unsigned int flags;     ///< 0
    unsigned int address;
    unsigned int wildcard;  ///< complement of a mask
};

/// Access lists of a bridge. A list is addressed by its name, a rule by the id that createRule gave
/// it: ids are not 0, and none is given twice in the life of the container.
///
/// A list is a sequence of rules, and a rule's sequence number is its place in it, counted from 1:
/// a rule that is put at a place moves those behind, one that goes closes the gap, and a number
/// past the end means the end. Rules are asked in that order, and the first whose condition matches
/// decides; a rule without a condition matches nothing. A packet that no rule matches passes, as
/// does what is not IPv4 and what answers a connection that this machine has opened.
///
/// The rule that was made first is the list's catch-all; its place is the caller's business.
///
/// Every operation takes effect as a whole or not at all, and may be called from any thread. It
/// returns 0 on success and a positive code on failure, which is logged with its reason: an unknown
/// list, rule, condition or port, a second list of a name, an assignment that is there already, a
/// system that refuses.
class ACLContainer_t {
public:
    enum aclType_t : int { aclRemoteAccess = 4 };

    struct aclRule_t {
        unsigned int sequenceNumber;
        bool permit;
        std::vector<zubridge_acl_condition> conditions;
    };

    /// The bridge's interface name and the container's kind ("acl"). Costs nothing until a list is
    /// made.
    ACLContainer_t(const std::string& bridge, const std::string& kind);
    /// Its lists go with it.
    ~ACLContainer_t();
    ACLContainer_t(const ACLContainer_t&) = delete;
    ACLContainer_t& operator=(const ACLContainer_t&) = delete;

    int createACL(const std::string& name, aclType_t type);
    /// Takes the list off its port, and its rules along.
    int deleteACL(const std::string& name);
    /// Sequence number 0 appends.
    int createRule(const std::string& name, bool permit, unsigned int& ruleId,
                   unsigned int sequenceNumber);
    int delRuleById(const std::string& name, unsigned int ruleId);
    /// A rule has one condition at most.
    int addCondition(const std::string& name, unsigned int ruleId,
                     const zubridge_acl_condition& condition);
    /// Conditions are numbered from 1.
    int delCondition(const std::string& name, unsigned int ruleId, unsigned int number);
    /// Takes the rule out and puts it at the place; 0 is the end.
    int changeRuleSequenceNumber(const std::string& name, unsigned int ruleId,
                                 unsigned int sequenceNumber);
    /// Binds the list to a port: traffic that enters it is filtered from now on. A list is bound to
    /// one port at most, and a port has one list at most, whatever the priority.
    int assignACL(const std::string& name, int portId, bool outgoing, unsigned int priority);
    /// What the rules have matched stays counted.
    int deassignACL(const std::string& name, int portId, bool outgoing);
    int getACLRule(const std::string& name, unsigned int ruleId, aclRule_t& rule) const;

private:
    struct Lists;
    std::unique_ptr<Lists> lists;
};

#pragma GCC visibility pop
