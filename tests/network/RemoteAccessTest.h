#pragma once

#include "fake/describe.h"
#include "network/EntityTest.h"
#include "network/exports.h"

#include <fmt/core.h>

#include <cstddef>
#include <string>
#include <vector>

/// Tests of the remote-access filter. The list's helpers are reached past their access
/// (-fno-access-control). Rule ids of the fake bridge count from 101, which is the catch-all.
class RemoteAccessTest : public EntityTest {
protected:
    RemoteAccessTest() { logEverything(); }

    /// Adds rules that permit 10.0.1.0/24, 10.0.2.0/24 and so on, in that order.
    void addRules(unsigned int count) {
        for (unsigned int number = 1; number <= count; ++number) {
            ASSERT_EQ(networkAddRARule(0x0a000000 | number << 8, 0xffffff00, 1, 0), 0);
        }
        journal();
    }

    /// The list as callers see it.
    std::vector<std::string> rules() {
        std::vector<std::string> all;
        Network::RemoteAccessRule rule{};
        for (unsigned int index = 0; networkIterateRules(index, &rule) == 0; ++index) {
            all.push_back(fmt::format("{} {} {}/{}", rule.sequenceNumber,
                                      rule.permit ? "permit" : "deny", fake::dotted(rule.ipAddr),
                                      fake::dotted(rule.netmask)));
        }
        journal();
        return all;
    }

    /// The bridge's list, and the ids of its rules in the order of their evaluation.
    fake::BridgeLists::List& bridgeList() { return platform.accessLists.lists["RA_mng0"]; }
    std::vector<unsigned int> bridgeRules() {
        std::vector<unsigned int> ids;
        for (const auto& rule : bridgeList().rules) {
            ids.push_back(rule.id);
        }
        return ids;
    }
    bool isBound() { return bridgeList().port == 1; }
};

/// The same with the list in the bridge.
class StandingRemoteAccess : public RemoteAccessTest {
protected:
    StandingRemoteAccess() {
        EXPECT_TRUE(entity().initNetworkAcl());
        journal();
    }
};

inline const std::string portFound = "interfaceMngGet() -> 0 1";

/// The list is bound to the port.
inline const Entries bound = {trace("assignNetworkAcl: aclAssigned=0"), portFound,
                              R"(assignACL("RA_mng0", 1, false, 0) -> 0)", trace("assignACL ok.")};
/// It is taken off for an edit.
inline const Entries unbound = {trace("deassignNetworkAcl: aclAssigned=1"), portFound,
                                R"(deassignACL("RA_mng0", 1, false) -> 0)",
                                trace("deassignACL ok.")};
/// The bridge refuses the one or the other.
inline Entries notBound(const std::string& code) {
    return {trace("assignNetworkAcl: aclAssigned=0"), portFound,
            R"(assignACL("RA_mng0", 1, false, 0) -> )" + code,
            error("assignACL faile. Return value: " + code)};
}
inline Entries notTakenOff(const std::string& code) {
    return {trace("deassignNetworkAcl: aclAssigned=1"), portFound,
            R"(deassignACL("RA_mng0", 1, false) -> )" + code,
            error("deassignACL faile. Return value: " + code)};
}
/// There is no port that it could be taken off.
inline const Entries portNotFound = {trace("deassignNetworkAcl: aclAssigned=1"),
                                     "interfaceMngGet() -> 3",
                                     error("interfaceMngGet has failed!")};
/// There is nothing to take off.
inline const Entries wasUnbound = {trace("deassignNetworkAcl: aclAssigned=0")};

/// The list is about to be created.
inline const Entries listNamed = {trace("initNetworkAcl: aclInitialized=0"), portFound,
                                  R"(interfaceLinuxnameGet(1, 37) -> 0 "mng0")",
                                  trace("initNetworkAcl: aclNameStr: RA_mng0.")};

/// What is said of 192.0.2.7 with the mask 255.255.255.0.
inline const Entries ruleCorrected = {
    trace("addRARule: before ip and mask correction mask=0xffffff00, ip=0xc0000207"),
    trace("correctNetmask: before negation mask=0xffffff00"),
    trace("correctNetmask: after negation mask=0xff"),
    trace("addRARule: used parameters: mask=0xff, ip=0xc0000200")};
inline const std::string listStands = trace("initNetworkAcl: aclInitialized=1");
inline const std::string appended = trace("addRARule: sequenceNumber=0");
inline const std::string catchAllMoved = R"(changeRuleSequenceNumber("RA_mng0", 101, 201) -> 0)";

inline int addOwnNetwork(unsigned int index) {
    return networkAddRARule(0xc0000207, 0xffffff00, 1, index);
}

/// A removal has come to the list.
inline std::string asked(const std::string& index) {
    return trace("removeRARule: sequenceNumber=" + index);
}

/// A rule of the bridge goes.
inline Entries gone(const std::string& id) {
    return {trace("removeRARule: ruleId=" + id + "."),
            R"(delCondition("RA_mng0", )" + id + ", 1) -> 0",
            R"(delRuleById("RA_mng0", )" + id + ") -> 0"};
}
/// The bridge keeps its condition, and with it the rule.
inline Entries conditionKept(const std::string& id, const std::string& code) {
    return {trace("removeRARule: ruleId=" + id + "."),
            R"(delCondition("RA_mng0", )" + id + ", 1) -> " + code,
            error("removeRARule: delCondition faile. Return value: " + code)};
}
/// The bridge keeps the rule without its condition.
inline Entries ruleKept(const std::string& id, const std::string& code) {
    return {trace("removeRARule: ruleId=" + id + "."),
            R"(delCondition("RA_mng0", )" + id + ", 1) -> 0",
            R"(delRuleById("RA_mng0", )" + id + ") -> " + code,
            error("removeRARule: delRule faile. Return value: " + code)};
}
