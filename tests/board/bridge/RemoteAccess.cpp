#include "RemoteAccess.h"

#include "BridgeTest.h"
#include "board/support/addresses.h"

namespace test {

namespace {

constexpr unsigned int catchAllPlace = 201;
constexpr int managementPort = 1;

}  // namespace

RemoteAccess::RemoteAccess(ACLContainer_t& container) : acls(container) {}

void RemoteAccess::start() {
    EXPECT_EQ(acls.createACL(name, ACLContainer_t::aclRemoteAccess), 0);
    EXPECT_EQ(acls.createRule(name, false, catchAll, catchAllPlace), 0);
    EXPECT_EQ(acls.addCondition(name, catchAll, from(0, 0)), 0);
}

void RemoteAccess::stop() {
    EXPECT_EQ(acls.delCondition(name, catchAll, 1), 0);
    EXPECT_EQ(acls.delRuleById(name, catchAll), 0);
    EXPECT_EQ(acls.deleteACL(name), 0);
}

int RemoteAccess::add(unsigned int address, unsigned int netmask, bool permit, unsigned int place) {
    if (isAssigned && acls.deassignACL(name, managementPort, false) != 0) {
        return -1;
    }
    isAssigned = false;
    unsigned int id = 0;
    const bool isMade = acls.createRule(name, permit, id, place) == 0;
    bool isWhole = false;
    if (isMade) {
        acls.changeRuleSequenceNumber(name, catchAll, catchAllPlace);
        ids.insert(place == 0 ? ids.end() : ids.begin() + (place - 1), id);
        isWhole = acls.addCondition(name, id, from(address & netmask, ~netmask)) == 0;
    }
    isAssigned = acls.assignACL(name, managementPort, false, 0) == 0;
    return isWhole && isAssigned ? 0 : -1;
}

int RemoteAccess::remove(unsigned int place) {
    if (isAssigned && acls.deassignACL(name, managementPort, false) != 0) {
        return -1;
    }
    isAssigned = false;
    const unsigned int id = ids.at(place - 1);
    const bool isDone = acls.delCondition(name, id, 1) == 0 && acls.delRuleById(name, id) == 0;
    if (isDone) {
        ids.erase(ids.begin() + (place - 1));
    }
    if (!ids.empty()) {
        isAssigned = acls.assignACL(name, managementPort, false, 0) == 0;
    }
    return isDone && isAssigned == !ids.empty() ? 0 : -1;
}

std::vector<std::string> RemoteAccess::rules() const {
    std::vector<std::string> result;
    for (const unsigned int id : ids) {
        ACLContainer_t::aclRule_t rule{};
        EXPECT_EQ(acls.getACLRule(name, id, rule), 0);
        std::string text = rule.permit ? "permit" : "deny";
        for (const zubridge_acl_condition& condition : rule.conditions) {
            text += " " + support::ipv4Text(condition.address) + " " +
                    support::ipv4Text(condition.wildcard);
        }
        result.push_back(text);
    }
    return result;
}

}  // namespace test
