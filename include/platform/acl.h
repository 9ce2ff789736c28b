#pragma once

#include <memory>
#include <string>
#include <vector>

#pragma GCC visibility push(default)

/// One condition of a rule: the source address of a packet, bits under the wildcard ignored.
struct zubridge_acl_condition {
    unsigned int kind;      ///< 1: match on a field of the packet
    unsigned int selector;  ///< 20: the IPv4 source address
    unsigned int flags;     ///< 0
    unsigned int address;   ///< host byte order
    unsigned int wildcard;  ///< complement of a mask, host byte order
};

/// Access lists of a bridge. A list is addressed by its name, a rule by the id that createRule gave
/// it. Rules are evaluated by rising sequence number. Every operation returns 0 on success and
/// another value on failure.
class ACLContainer_t {
public:
    enum aclType_t : int { aclRemoteAccess = 4 };

    struct aclRule_t {
        unsigned int sequenceNumber;
        bool permit;
        std::vector<zubridge_acl_condition> conditions;
    };

    /// The bridge's interface name and the container's kind ("acl").
    ACLContainer_t(const std::string& bridge, const std::string& kind);
    ~ACLContainer_t();
    ACLContainer_t(const ACLContainer_t&) = delete;
    ACLContainer_t& operator=(const ACLContainer_t&) = delete;

    int createACL(const std::string& name, aclType_t type);
    /// Takes the rules of the list along.
    int deleteACL(const std::string& name);
    /// Sequence number 0 appends behind the last rule.
    int createRule(const std::string& name, bool permit, unsigned int& ruleId,
                   unsigned int sequenceNumber);
    int delRuleById(const std::string& name, unsigned int ruleId);
    int addCondition(const std::string& name, unsigned int ruleId,
                     const zubridge_acl_condition& condition);
    /// Conditions are numbered from 1.
    int delCondition(const std::string& name, unsigned int ruleId, unsigned int number);
    int changeRuleSequenceNumber(const std::string& name, unsigned int ruleId,
                                 unsigned int sequenceNumber);
    /// Binds the list to a port: traffic that enters it is filtered from now on.
    int assignACL(const std::string& name, int portId, bool outgoing, unsigned int priority);
    int deassignACL(const std::string& name, int portId, bool outgoing);
    int getACLRule(const std::string& name, unsigned int ruleId, aclRule_t& rule) const;

private:
    struct Lists;
    std::unique_ptr<Lists> lists;
};

#pragma GCC visibility pop
