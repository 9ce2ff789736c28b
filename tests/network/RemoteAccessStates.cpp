// The remote-access list where the entity and the bridge do not agree on it: forgotten, stopped and
// started again, not bound, or with a rule that is not whole.

#include "network/RemoteAccessTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Forgotten, with the list still in the bridge.

class ForgottenRemoteAccess : public RemoteAccessTest {
protected:
    ForgottenRemoteAccess() {
        addRules(2);
        entity().networkRAClear();
    }
};

TEST_F(ForgottenRemoteAccess, TakesNoRuleWhileTheBridgeHasTheList) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(addOwnNetwork(0), -1);
        EXPECT_JOURNAL(exclusively(
            ruleCorrected, listNamed, R"(createACL("RA_mng0", 4) -> 1)",
            error("initNetworkAcl: createACL(RA_mng0): faild! Remote access filtering will not "
                  "be able to work! Return value: 1")));
    }
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().ruleIdx, 0U);
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 101));
    EXPECT_TRUE(isBound());
}

TEST_F(ForgottenRemoteAccess, HasNoRuleToRemove) {
    for (const unsigned int index : {0U, 1U, 2U}) {
        EXPECT_EQ(networkRemoveRARule(index), 0);
        EXPECT_JOURNAL(
            exclusively(trace("removeRARule: Remote access filtering is already empty.")));
    }
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 101));
    EXPECT_TRUE(isBound());
}

TEST_F(ForgottenRemoteAccess, IsNotTakenOutOfTheBridge) {
    EXPECT_TRUE(entity().destroyNetworkAcl());
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_TRUE(isBound());
}

// Stopped and started again with rules. The list is a new one, of which neither the rules nor the
// port are the bridge's any more.

class RestartedRemoteAccess : public RemoteAccessTest {
protected:
    RestartedRemoteAccess() {
        EXPECT_TRUE(entity().initNetworkAcl());
        addRules(2);
    }
    ~RestartedRemoteAccess() override {
        entity().stop();
        platform.journal.takeAll();
    }

    void restart() {
        EXPECT_EQ(entity().stop(), 1);
        EXPECT_JOURNAL(R"(delCondition("RA_mng0", 101, 1) -> 0)",
                       R"(delRuleById("RA_mng0", 101) -> 0)", R"(deleteACL("RA_mng0") -> 0)",
                       "shelfIdChanged()", "externalMessage()");
        EXPECT_EQ(entity().start(), 1);
        EXPECT_JOURNAL(listNamed, R"(createACL("RA_mng0", 4) -> 0)",
                       R"(createRule("RA_mng0", deny, 201) -> 0 104)",
                       R"(addCondition("RA_mng0", 104, {1 20 0 0.0.0.0 0.0.0.0}) -> 0)",
                       trace("initNetworkAcl: addCondition ok."), "fflush(all)", "shelfIdChanged()",
                       "externalMessage()", "pthread_create() -> 0");
        entity().rpcProxy.stop(false);
        platform.journal.takeAll();
    }
};

/// The bridge does not find the list at the port.
const Entries notFoundAtThePort = {notTakenOff("1")};

TEST_F(RestartedRemoteAccess, KeepsCountingTheRulesThatItNoLongerHas) {
    restart();
    EXPECT_EQ(entity().getAclIdx(), 2U);
    journal();
    EXPECT_EQ(entity().aclInitialized, 1U);
    EXPECT_EQ(entity().aclAssigned, 1U);
    EXPECT_EQ(entity().defaultRuleId, 104U);
    EXPECT_THAT(bridgeRules(), ElementsAre(104));
    EXPECT_FALSE(isBound());
    Network::RemoteAccessRule rule{77, 78, 79, true};
    EXPECT_EQ(networkIterateRules(0, &rule), -1);
    EXPECT_JOURNAL(sharing(trace("iterateRules: sequenceNumber=0, ruleId=102."),
                           R"(getACLRule("RA_mng0", 102) -> 1)",
                           error("iterateRules: remoteAcl.getACLRule has failed!")));
    EXPECT_EQ(rule.sequenceNumber, 77U);
}

TEST_F(RestartedRemoteAccess, TakesNoRuleAndGivesNoneUp) {
    restart();
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(
        exclusively(ruleCorrected, trace("initNetworkAcl: aclInitialized=1"), notFoundAtThePort));
    for (const unsigned int index : {0U, 1U, 2U}) {
        EXPECT_EQ(networkRemoveRARule(index), -1);
        EXPECT_JOURNAL(exclusively(notFoundAtThePort));
    }
    EXPECT_EQ(entity().ruleIdx, 2U);
}

TEST_F(RestartedRemoteAccess, WorksOnceItIsForgottenInBetween) {
    EXPECT_EQ(entity().stop(), 1);
    entity().networkRAClear();
    EXPECT_EQ(entity().start(), 1);
    entity().rpcProxy.stop(false);
    platform.journal.takeAll();
    EXPECT_EQ(addOwnNetwork(0), 0);
    journal();
    EXPECT_THAT(rules(), ElementsAre("1 permit 192.0.2.0/255.255.255.0"));
    EXPECT_TRUE(isBound());
}

// A rule without its condition.

using RemoteAccessOfParts = StandingRemoteAccess;

TEST_F(RemoteAccessOfParts, RuleWithoutItsConditionCannotBeRemoved) {
    addRules(1);
    platform.fail("addCondition", 5, 1);
    EXPECT_EQ(addOwnNetwork(0), 0);
    journal();
    for (const auto& [index, text] : {std::pair{2U, "2"}, {0U, "0"}}) {
        EXPECT_EQ(networkRemoveRARule(index), -1);
        EXPECT_JOURNAL(exclusively(unbound, asked(text), conditionKept("103", "1"), bound));
    }
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 101));
    EXPECT_EQ(entity().ruleIdx, 2U);
    EXPECT_TRUE(isBound());

    EXPECT_EQ(networkRemoveRARule(1), 0) << "the others can";
    journal();
    EXPECT_EQ(entity().ruleIds[0], 103U);
}

// Rules in a list that is not bound.

TEST_F(RemoteAccessOfParts, RemovalBindsAListThatWasNot) {
    addRules(1);
    platform.fail("assignACL", 5, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    journal();
    ASSERT_FALSE(isBound());
    EXPECT_EQ(networkRemoveRARule(1), 0);
    EXPECT_JOURNAL(exclusively(wasUnbound, asked("1"), gone("102"),
                               trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=1"), bound));
    EXPECT_TRUE(isBound());
    EXPECT_THAT(rules(), ElementsAre("1 permit 192.0.2.0/255.255.255.0"));
}

TEST_F(RemoteAccessOfParts, OnlyRuleOfAListThatWasNotBoundLeavesItSo) {
    for (const auto& [index, text] : {std::pair{1U, "1"}, {0U, "0"}}) {
        platform.fail("assignACL", 5, 1);
        EXPECT_EQ(addOwnNetwork(0), -1);
        journal();
        const std::string id = std::to_string(bridgeRules().front());
        EXPECT_EQ(networkRemoveRARule(index), 0);
        const Entries told = index == 0
                                 ? Entries{}
                                 : Entries{trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=0")};
        EXPECT_JOURNAL(exclusively(wasUnbound, asked(text), gone(id), told));
        EXPECT_THAT(bridgeRules(), ElementsAre(101));
        EXPECT_FALSE(isBound());
    }
}

}  // namespace
