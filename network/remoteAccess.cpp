// The remote-access filter: an access list of the bridge, bound to the management port. The bridge
// keeps the rules; what is kept here is the order of their ids, which is what callers see as
// positions. While the list is edited it is detached from the port, and without a rule it stays so:
// the catch-all at its end would shut everybody out.

#include "network/Network.h"
#include "platform/interfaces.h"
#include "platform/zubridge.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

constexpr char aclPrefix[] = "RA_";
constexpr std::size_t aclPrefixLength = sizeof aclPrefix - 1;

/// Bytes that the name of the port may take behind the prefix.
constexpr int portNameSize = 37;

/// The catch-all stands one past the last rule, so that it is evaluated last.
constexpr unsigned int lastPosition = 200;
constexpr unsigned int catchAllPosition = lastPosition + 1;

/// Rules have one condition each; the bridge numbers them from 1.
constexpr unsigned int onlyCondition = 1;

constexpr ACLContainer_t::aclType_t aclType = ACLContainer_t::aclRemoteAccess;
constexpr bool incoming = false;
constexpr unsigned int priority = 0;

zubridge_acl_condition sourceCondition(unsigned int address, unsigned int wildcard) {
    constexpr unsigned int matchOnField = 1;
    constexpr unsigned int ipv4Source = 20;
    return {matchOnField, ipv4Source, 0, address, wildcard};
}

/// The container that holds the rules is the bridge's, not the entity's own.
ACLContainer_t& bridgeAcls() { return singleton<zubridge>::instance().aclContainer(); }

}  // namespace

bool Network::initNetworkAcl() {
    trace("[networkBLE]: initNetworkAcl: aclInitialized=%d\n", aclInitialized);
    if (aclInitialized != 0) {
        return true;
    }
    int port = 0;
    if (reportIf(interfaceMngGet(&port) != 0, "[networkBLE]: interfaceMngGet failed.\n")) {
        return false;
    }
    std::memset(aclName, 0, sizeof aclName);
    std::memcpy(aclName, aclPrefix, aclPrefixLength);
    reportIf(
        interfaceLinuxnameGet(port, portNameSize, aclName + aclPrefixLength) != 0,
        "[networkBLE]: initNetworkAcl: function interfaceLinuxnameGet has failed! portID: %d.\n",
        port);
    trace("[networkBLE]: initNetworkAcl: aclNameStr: %s.\n", aclName);

    ACLContainer_t& acls = bridgeAcls();
    int status = acls.createACL(aclName, aclType);
    if (reportIf(
            status != 0,
            "[networkBLE]: initNetworkAcl: createACL(%s): faild! Remote access filtering will not be able to work! Return value: %d\n",
            aclName, status)) {
        return false;
    }
    unsigned int ruleId = 0;
    status = acls.createRule(aclName, false, ruleId, catchAllPosition);
    if (reportIf(status != 0, "[networkBLE]: initNetworkAcl: createRule failed. Return value: %d\n",
                 status)) {
        acls.deleteACL(aclName);
        return false;
    }
    defaultRuleId = ruleId;
    status = acls.addCondition(aclName, ruleId, sourceCondition(0, 0));
    reportIf(status != 0,
             "[networkBLE]: initNetworkAcl: addCondition faile. ruleId=%d, Return value: %d\n",
             ruleId, status);
    // Said after a failure as well.
    trace("[networkBLE]: initNetworkAcl: addCondition ok.\n");
    std::fflush(nullptr);
    aclInitialized = 1;
    return true;
}

bool Network::destroyNetworkAcl() {
    if (aclInitialized == 0) {
        return true;
    }
    ACLContainer_t& acls = bridgeAcls();
    int status = acls.delCondition(aclName, defaultRuleId, onlyCondition);
    reportIf(status != 0, "[networkBLE]: destroyNetworkAcl: delCondition faile. Return value: %d\n",
             status);
    status = acls.delRuleById(aclName, defaultRuleId);
    reportIf(status != 0, "[networkBLE]: destroyNetworkAcl: delRule faile. Return value: %d\n",
             status);
    // The rules go with their list.
    status = acls.deleteACL(aclName);
    if (reportIf(
            status != 0,
            "[networkBLE]: destroyNetworkAcl: deleteACL(%s): faild! Remote access filtering will not be able to work anymore! Return value: %d\n",
            aclName, status)) {
        return false;
    }
    aclInitialized = 0;
    return true;
}

bool Network::assignNetworkAcl() {
    trace("[networkBLE]: assignNetworkAcl: aclAssigned=%d\n", aclAssigned);
    if (aclAssigned != 0) {
        return true;
    }
    int port = 0;
    if (reportIf(interfaceMngGet(&port) != 0, "[networkBLE]: interfaceMngGet has failed!\n")) {
        return false;
    }
    const int status = bridgeAcls().assignACL(aclName, port, incoming, priority);
    if (reportIf(status != 0, "[networkBLE]: assignACL faile. Return value: %d\n", status)) {
        return false;
    }
    aclAssigned = 1;
    trace("[networkBLE]: assignACL ok.\n");
    return true;
}

bool Network::deassignNetworkAcl() {
    trace("[networkBLE]: deassignNetworkAcl: aclAssigned=%d\n", aclAssigned);
    if (aclAssigned == 0) {
        return true;
    }
    int port = 0;
    if (reportIf(interfaceMngGet(&port) != 0, "[networkBLE]: interfaceMngGet has failed!\n")) {
        return false;
    }
    const int status = bridgeAcls().deassignACL(aclName, port, incoming);
    if (reportIf(status != 0, "[networkBLE]: deassignACL faile. Return value: %d\n", status)) {
        return false;
    }
    aclAssigned = 0;
    trace("[networkBLE]: deassignACL ok.\n");
    return true;
}

void Network::networkRAClear() {
    std::fill(std::begin(ruleIds), std::end(ruleIds), 0);
    ruleIdx = 0;
    aclInitialized = 0;
    aclAssigned = 0;
}

int Network::addRARule(unsigned int ipAddr, unsigned int netmask, bool permit, unsigned int index) {
    return withExclusiveLock([&] {
        // The order of these checks lets an index past the end append, whatever it is.
        if (index > ruleIdx) {
            trace("[networkBLE]: addRARule: index(%d) bigger than ruleIdx(%d).\n", index, ruleIdx);
            index = 0;
        } else if (reportIf(index > lastPosition, "[networkBLE]: addRARule: index(%d) too big.\n",
                            index)) {
            return -1;
        }
        if (reportIf(ruleIdx >= lastPosition, "[networkBLE]: addRARule: index(%d) too big.\n",
                     ruleIdx + 1)) {
            return -1;
        }
        unsigned int wildcard = netmask;
        trace("[networkBLE]: addRARule: before ip and mask correction mask=0x%x, ip=0x%x\n",
              wildcard, ipAddr);
        correctNetmask(&wildcard, true);
        const unsigned int network = ipAddr & ~wildcard;
        trace("[networkBLE]: addRARule: used parameters: mask=0x%x, ip=0x%x\n", wildcard, network);
        if (!initNetworkAcl() || !deassignNetworkAcl()) {
            return -1;
        }
        unsigned int ruleId = 0;
        if (!createUserRule(permit, index, ruleId)) {
            return -1;
        }
        rememberRule(ruleId, index);
        const int status =
            bridgeAcls().addCondition(aclName, ruleId, sourceCondition(network, wildcard));
        reportIf(status != 0,
                 "[networkBLE]: addRARule: addCondition faile. ruleId=%d, Return value: %d\n",
                 ruleId, status);
        // Said after a failure as well; the rule then stays in the list without a condition.
        trace("[networkBLE]: addRARule: addCondition ok.\n");
        return assignNetworkAcl() ? 0 : -1;
    });
}

bool Network::createUserRule(bool permit, unsigned int index, unsigned int& ruleId) {
    trace("[networkBLE]: addRARule: sequenceNumber=%d\n", index);
    ACLContainer_t& acls = bridgeAcls();
    int status = acls.createRule(aclName, permit, ruleId, index);
    if (reportIf(status != 0, "[networkBLE]: addRARule: createRule failed. Return value: %d\n",
                 status)) {
        reportIf(!assignNetworkAcl(),
                 "[networkBLE]: addRARule: assignNetworkAcl failed. Return value: %d\n", 0);
        return false;
    }
    trace("[networkBLE]: addRARule: createRule ok (ruleId=%u).\n", ruleId);
    status = acls.changeRuleSequenceNumber(aclName, defaultRuleId, catchAllPosition);
    reportIf(status != 0,
             "[networkBLE]: addRARule: changeRuleSequenceNumber failed. Return value: %d\n",
             status);
    return true;
}

void Network::rememberRule(unsigned int ruleId, unsigned int index) {
    const unsigned int count = ruleIdx;
    ruleIdx = count + 1;
    const unsigned int slot = index != 0 ? index - 1 : count;
    // The new count stands in both places.
    trace("[networkBLE]: addRARule: i=%d, ruleIdx=%d\n", ruleIdx, ruleIdx);
    std::copy_backward(ruleIds + slot, ruleIds + count, ruleIds + ruleIdx);
    ruleIds[slot] = ruleId;
}

int Network::removeRARule(unsigned int index) {
    return withExclusiveLock([&] {
        if (ruleIdx == 0) {
            trace("[networkBLE]: removeRARule: Remote access filtering is already empty.\n");
            return 0;
        }
        if (reportIf(index > lastPosition, "[networkBLE]: removeRARule: index(%d) too big.\n",
                     index) ||
            reportIf(aclInitialized == 0,
                     "[networkBLE]: removeRARule: Network ACL not initialized.\n")) {
            return -1;
        }
        if (!deassignNetworkAcl()) {
            return -1;
        }
        trace("[networkBLE]: removeRARule: sequenceNumber=%d\n", index);
        return index == 0 ? removeAllRules() : removeRuleAt(index);
    });
}

/// Last to first.
int Network::removeAllRules() {
    while (ruleIdx > 0) {
        if (!removeFromBridge(ruleIds[ruleIdx - 1])) {
            return -1;
        }
        ruleIds[ruleIdx] = 0;
    }
    return 0;
}

/// A position behind the end of the list names an empty slot, and its content is handed to the
/// bridge as any other: the bridge decides.
int Network::removeRuleAt(unsigned int index) {
    const unsigned int slot = index - 1;
    if (!removeFromBridge(ruleIds[slot])) {
        return -1;
    }
    trace("[networkBLE]: removeRARule: sequenceNumber=%d, i=%d, ruleIdx=%d\n", index, slot,
          ruleIdx);
    if (slot < ruleIdx) {
        std::copy(ruleIds + slot + 1, ruleIds + ruleIdx + 1, ruleIds + slot);
    }
    ruleIds[ruleIdx] = 0;
    if (slot == ruleIdx && ruleIdx == 0) {
        return 0;
    }
    return assignNetworkAcl() ? 0 : -1;
}

bool Network::removeFromBridge(unsigned int ruleId) {
    trace("[networkBLE]: removeRARule: ruleId=%u.\n", ruleId);
    ACLContainer_t& acls = bridgeAcls();
    int status = acls.delCondition(aclName, ruleId, onlyCondition);
    if (reportIf(status != 0, "[networkBLE]: removeRARule: delCondition faile. Return value: %d\n",
                 status)) {
        reportIf(
            !assignNetworkAcl(),
            "[networkBLE]: removeRARule: assignNetworkAcl failed. ruleId=%d, Return value: %d\n",
            ruleId, 0);
        return false;
    }
    status = acls.delRuleById(aclName, ruleId);
    reportIf(status != 0, "[networkBLE]: removeRARule: delRule faile. Return value: %d\n", status);
    --ruleIdx;
    return true;
}

int Network::iterateRules(unsigned int index, RemoteAccessRule* rule) {
    return withSharedLock([&] {
        if (reportIf(rule == nullptr,
                     "[networkBLE]: iterateRules failed! One of input args is NULL. data: %p\n",
                     address(rule))) {
            return -1;
        }
        if (ruleIdx == 0) {
            trace("[networkBLE]: iterateRules: Remote access filtering is empty.\n");
            return -1;
        }
        if (reportIf(aclInitialized == 0,
                     "[networkBLE]: iterateRules: Network ACL not initialized.\n") ||
            index >= ruleIdx) {
            return -1;
        }
        const unsigned int ruleId = ruleIds[index];
        trace("[networkBLE]: iterateRules: sequenceNumber=%d, ruleId=%u.\n", index, ruleId);
        ACLContainer_t::aclRule_t found{};
        if (reportIf(bridgeAcls().getACLRule(aclName, ruleId, found) != 0,
                     "[networkBLE]: iterateRules: remoteAcl.getACLRule has failed!\n")) {
            return -1;
        }
        trace("[networkBLE]: iterateRules: rule.sequenceNumber=%d, sequenceNumber=%d.\n",
              found.sequenceNumber, index);
        rule->sequenceNumber = index + 1;
        if (!found.conditions.empty()) {
            rule->ipAddr = found.conditions.front().address;
            rule->netmask = found.conditions.front().wildcard;
        }
        trace("[networkBLE]: iterateRules: before ip and mask correction mask=0x%x, ip=0x%x\n",
              rule->netmask, rule->ipAddr);
        rule->netmask = ~rule->netmask;
        rule->permit = found.permit;
        return 0;
    });
}

unsigned int Network::getAclIdx() {
    return static_cast<unsigned int>(withSharedLock([&] { return static_cast<int>(ruleIdx); }));
}
