// Removing and listing the rules of the remote-access list.

#include "network/RemoteAccessTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using RemoteAccessRemoval = StandingRemoteAccess;

TEST_F(RemoteAccessRemoval, RuleInTheMiddleGoesAndTheRestMovesUp) {
    addRules(4);
    EXPECT_EQ(networkRemoveRARule(2), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("2"), gone("103"),
                               trace("removeRARule: sequenceNumber=2, i=1, ruleIdx=3"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 permit 10.0.3.0/255.255.255.0",
                            "3 permit 10.0.4.0/255.255.255.0"));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 104, 105, 101));
    EXPECT_EQ(entity().ruleIds[3], 0U);
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccessRemoval, FirstAndLastRulesGo) {
    addRules(4);
    EXPECT_EQ(networkRemoveRARule(4), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("4"), gone("105"),
                               trace("removeRARule: sequenceNumber=4, i=3, ruleIdx=3"), bound));
    EXPECT_EQ(networkRemoveRARule(1), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("1"), gone("102"),
                               trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=2"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.2.0/255.255.255.0", "2 permit 10.0.3.0/255.255.255.0"));
    EXPECT_EQ(entity().ruleIds[2], 0U);
    EXPECT_EQ(entity().ruleIds[3], 0U);
}

TEST_F(RemoteAccessRemoval, OnlyRuleLeavesTheListUnbound) {
    addRules(1);
    EXPECT_EQ(networkRemoveRARule(1), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("1"), gone("102"),
                               trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=0")));
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_THAT(bridgeRules(), ElementsAre(101));
    EXPECT_FALSE(isBound());
}

TEST_F(RemoteAccessRemoval, ZeroRemovesAllLastToFirst) {
    addRules(3);
    EXPECT_EQ(networkRemoveRARule(0), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("0"), gone("104"), gone("103"), gone("102")));
    EXPECT_EQ(entity().getAclIdx(), 0U);
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_THAT(bridgeRules(), ElementsAre(101));
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_FALSE(isBound());
}

TEST_F(RemoteAccessRemoval, AllOfTwoHundredGoAndOthersMayCome) {
    addRules(200);
    EXPECT_EQ(networkRemoveRARule(200), 0);
    journal();
    EXPECT_EQ(rules().size(), 199U);
    EXPECT_EQ(networkRemoveRARule(0), 0);
    journal();
    EXPECT_THAT(rules(), IsEmpty());
    addRules(200);
    EXPECT_EQ(rules().size(), 200U);
}

TEST_F(RemoteAccessRemoval, EmptyListIsNoFailureWhateverTheIndex) {
    for (const unsigned int index : {0U, 1U, 201U, 4294967295U}) {
        EXPECT_EQ(networkRemoveRARule(index), 0);
        EXPECT_JOURNAL(
            exclusively(trace("removeRARule: Remote access filtering is already empty.")));
    }
}

TEST_F(RemoteAccessRemoval, IndexBeyondTwoHundredIsRefused) {
    addRules(1);
    for (const auto& [index, text] : {std::pair{201U, "201"}, {4294967295U, "-1"}}) {
        EXPECT_EQ(networkRemoveRARule(index), -1);
        EXPECT_JOURNAL(
            exclusively(error("removeRARule: index(" + std::string(text) + ") too big.")));
    }
    EXPECT_EQ(rules().size(), 1U);
}

// The slot behind the list is empty, and the bridge is asked for the rule 0.
TEST_F(RemoteAccessRemoval, IndexBehindTheListIsTheBridgesToRefuse) {
    addRules(2);
    for (const auto& [index, text] : {std::pair{3U, "3"}, {200U, "200"}}) {
        EXPECT_EQ(networkRemoveRARule(index), -1);
        EXPECT_JOURNAL(exclusively(unbound, asked(text), conditionKept("0", "1"), bound));
    }
    EXPECT_EQ(rules().size(), 2U);
}

TEST_F(RemoteAccessRemoval, IndexBehindTheListCostsTheLastRuleIfTheBridgeAccepts) {
    addRules(3);
    bridgeList().rules.push_back({0, true, {{1, 20, 0, 0, 0}}});
    EXPECT_EQ(networkRemoveRARule(10), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("10"), gone("0"),
                               trace("removeRARule: sequenceNumber=10, i=9, ruleIdx=2"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 permit 10.0.2.0/255.255.255.0"));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 104, 101)) << "the bridge keeps its rule";
}

// The empty list is bound in this one case, with the catch-all and the rule that was lost sight of.
TEST_F(RemoteAccessRemoval, IndexBehindTheOnlyRuleLeavesTheListBoundIfTheBridgeAccepts) {
    addRules(1);
    bridgeList().rules.push_back({0, true, {{1, 20, 0, 0, 0}}});
    EXPECT_EQ(networkRemoveRARule(2), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("2"), gone("0"),
                               trace("removeRARule: sequenceNumber=2, i=1, ruleIdx=0"), bound));
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccessRemoval, IsRefusedWithoutAList) {
    addRules(1);
    EXPECT_TRUE(entity().destroyNetworkAcl());
    journal();
    EXPECT_EQ(networkRemoveRARule(1), -1);
    EXPECT_JOURNAL(exclusively(error("removeRARule: Network ACL not initialized.")));
    EXPECT_EQ(entity().getAclIdx(), 1U);
    journal();
}

TEST_F(RemoteAccessRemoval, IsRefusedWhenTheListCannotBeTakenOff) {
    addRules(2);
    platform.fail("deassignACL", 4, 1);
    EXPECT_EQ(networkRemoveRARule(1), -1);
    EXPECT_JOURNAL(exclusively(notTakenOff("4")));
    platform.fail("interfaceMngGet", 3, 1);
    EXPECT_EQ(networkRemoveRARule(0), -1);
    EXPECT_JOURNAL(exclusively(portNotFound));
    EXPECT_EQ(rules().size(), 2U);
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccessRemoval, ConditionThatStaysKeepsTheRuleAndTheListIsBoundAgain) {
    addRules(2);
    platform.fail("delCondition", 5, 1);
    EXPECT_EQ(networkRemoveRARule(1), -1);
    EXPECT_JOURNAL(exclusively(unbound, asked("1"), conditionKept("102", "5"), bound));
    EXPECT_EQ(rules().size(), 2U);
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccessRemoval, ListThatCannotBeBoundAgainAfterThatIsReported) {
    addRules(2);
    platform.fail("delCondition", 5, 1);
    platform.fail("assignACL", 6, 1);
    EXPECT_EQ(networkRemoveRARule(1), -1);
    EXPECT_JOURNAL(
        exclusively(unbound, asked("1"), conditionKept("102", "5"), notBound("6"),
                    error("removeRARule: assignNetworkAcl failed. ruleId=102, Return value: 0")));
    EXPECT_FALSE(isBound());
}

TEST_F(RemoteAccessRemoval, RuleThatTheBridgeKeepsIsDroppedFromTheList) {
    addRules(2);
    platform.fail("delRuleById", -6, 1);
    EXPECT_EQ(networkRemoveRARule(1), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("1"), ruleKept("102", "-6"),
                               trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=1"), bound));
    EXPECT_THAT(rules(), ElementsAre("1 permit 10.0.2.0/255.255.255.0"));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 101));
}

TEST_F(RemoteAccessRemoval, FailsWhenTheListCannotBeBoundAgainThoughTheRuleIsGone) {
    addRules(2);
    platform.fail("assignACL", 6, 1);
    EXPECT_EQ(networkRemoveRARule(1), -1);
    EXPECT_JOURNAL(exclusively(unbound, asked("1"), gone("102"),
                               trace("removeRARule: sequenceNumber=1, i=0, ruleIdx=1"),
                               notBound("6")));
    EXPECT_EQ(rules().size(), 1U);
    EXPECT_FALSE(isBound());
}

TEST_F(RemoteAccessRemoval, OfAllBreaksOffWhereAConditionStays) {
    addRules(3);
    platform.fail("delCondition", 5, 1, 1);
    EXPECT_EQ(networkRemoveRARule(0), -1);
    EXPECT_JOURNAL(exclusively(unbound, asked("0"), gone("104"), conditionKept("103", "5"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 permit 10.0.2.0/255.255.255.0"));
    EXPECT_EQ(entity().ruleIds[2], 0U);
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccessRemoval, OfAllDropsRulesThatTheBridgeKeeps) {
    addRules(2);
    platform.fail("delRuleById", 6);
    EXPECT_EQ(networkRemoveRARule(0), 0);
    EXPECT_JOURNAL(exclusively(unbound, asked("0"), ruleKept("103", "6"), ruleKept("102", "6")));
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 101));
    EXPECT_FALSE(isBound());
}

// Listing.

using RemoteAccessListing = RemoteAccessRemoval;

TEST_F(RemoteAccessListing, ReportsARuleByItsPlace) {
    addRules(2);
    EXPECT_EQ(networkAddRARule(0xc0000207, 0xffffff00, 0, 2), 0);
    journal();
    Network::RemoteAccessRule rule{77, 77, 77, true};
    EXPECT_EQ(networkIterateRules(1, &rule), 0);
    EXPECT_JOURNAL(
        sharing(trace("iterateRules: sequenceNumber=1, ruleId=104."),
                R"(getACLRule("RA_mng0", 104) -> 0 2 deny)",
                trace("iterateRules: rule.sequenceNumber=2, sequenceNumber=1."),
                trace("iterateRules: before ip and mask correction mask=0xff, ip=0xc0000200")));
    EXPECT_EQ(rule.sequenceNumber, 2U);
    EXPECT_EQ(rule.ipAddr, 0xc0000200U);
    EXPECT_EQ(rule.netmask, 0xffffff00U);
    EXPECT_FALSE(rule.permit);
}

TEST_F(RemoteAccessListing, UsesTheFirstConditionOfARule) {
    addRules(1);
    bridgeList().rules.front().conditions.push_back({1, 20, 0, 1, 1});
    EXPECT_THAT(rules(), ElementsAre("1 permit 10.0.1.0/255.255.255.0"));
}

TEST_F(RemoteAccessListing, EndsSilentlyBehindTheLastRule) {
    addRules(2);
    Network::RemoteAccessRule rule{77, 77, 77, true};
    for (const unsigned int index : {2U, 200U, 4294967295U}) {
        EXPECT_EQ(networkIterateRules(index, &rule), -1);
        EXPECT_JOURNAL(sharing());
    }
    EXPECT_EQ(rule.sequenceNumber, 77U);
}

TEST_F(RemoteAccessListing, OfAnEmptyListFails) {
    Network::RemoteAccessRule rule{};
    EXPECT_EQ(networkIterateRules(0, &rule), -1);
    EXPECT_JOURNAL(sharing(trace("iterateRules: Remote access filtering is empty.")));
}

TEST_F(RemoteAccessListing, WithoutAListFails) {
    addRules(1);
    EXPECT_TRUE(entity().destroyNetworkAcl());
    journal();
    Network::RemoteAccessRule rule{};
    EXPECT_EQ(networkIterateRules(0, &rule), -1);
    EXPECT_JOURNAL(sharing(error("iterateRules: Network ACL not initialized.")));
}

TEST_F(RemoteAccessListing, ReportsARecordThatIsNull) {
    addRules(1);
    EXPECT_EQ(networkIterateRules(0, nullptr), -1);
    EXPECT_JOURNAL(sharing(error("iterateRules failed! One of input args is NULL. data: (nil)")));
}

TEST_F(RemoteAccessListing, ReportsARuleThatTheBridgeDoesNotGiveAndLeavesTheRecord) {
    addRules(1);
    platform.fail("getACLRule", 5);
    Network::RemoteAccessRule rule{77, 78, 79, true};
    EXPECT_EQ(networkIterateRules(0, &rule), -1);
    EXPECT_JOURNAL(sharing(trace("iterateRules: sequenceNumber=0, ruleId=102."),
                           R"(getACLRule("RA_mng0", 102) -> 5)",
                           error("iterateRules: remoteAcl.getACLRule has failed!")));
    EXPECT_EQ(rule.sequenceNumber, 77U);
    EXPECT_EQ(rule.ipAddr, 78U);
    EXPECT_EQ(rule.netmask, 79U);
    EXPECT_TRUE(rule.permit);
}

TEST_F(RemoteAccessListing, CountsTheRules) {
    EXPECT_EQ(entity().getAclIdx(), 0U);
    EXPECT_JOURNAL(sharing());
    addRules(3);
    EXPECT_EQ(entity().getAclIdx(), 3U);
    EXPECT_EQ(networkRemoveRARule(2), 0);
    EXPECT_EQ(entity().getAclIdx(), 2U);
    journal();
}

}  // namespace
