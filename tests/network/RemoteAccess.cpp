// The remote-access list and the adding of rules.

#include "network/RemoteAccessTest.h"

#include <iterator>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string catchAllCreated = R"(createRule("RA_mng0", deny, 201) -> 0 101)";
const std::string catchAllMatchesAll =
    R"(addCondition("RA_mng0", 101, {1 20 0 0.0.0.0 0.0.0.0}) -> 0)";

/// A rule for 192.0.2.0/24 comes into the bridge, and so many are in the list then.
Entries ruleAdded(const std::string& id, const std::string& count,
                  const std::string& verdictAndPlace = "permit, 0") {
    return {R"(createRule("RA_mng0", )" + verdictAndPlace + ") -> 0 " + id,
            trace("addRARule: createRule ok (ruleId=" + id + ")."),
            catchAllMoved,
            trace("addRARule: i=" + count + ", ruleIdx=" + count),
            R"(addCondition("RA_mng0", )" + id + ", {1 20 0 192.0.2.0 0.0.0.255}) -> 0",
            trace("addRARule: addCondition ok.")};
}

/// An edit has come to the list, which is not bound as yet; a rule is to be appended.
const Entries firstAppended = sequence(ruleCorrected, listStands, wasUnbound, appended);

const Entries listCreated =
    sequence(listNamed, R"(createACL("RA_mng0", 4) -> 0)", catchAllCreated, catchAllMatchesAll,
             trace("initNetworkAcl: addCondition ok."), "fflush(all)");

// The list.

using RemoteAccessList = RemoteAccessTest;

TEST_F(RemoteAccessList, IsCreatedWithItsCatchAllAndNotBound) {
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_JOURNAL(listCreated);
    EXPECT_THAT(bridgeRules(), ElementsAre(101));
    EXPECT_FALSE(isBound());
    EXPECT_EQ(entity().defaultRuleId, 101U);
}

TEST_F(RemoteAccessList, IsCreatedOnce) {
    EXPECT_TRUE(entity().initNetworkAcl());
    journal();
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_JOURNAL(trace("initNetworkAcl: aclInitialized=1"));
}

TEST_F(RemoteAccessList, IsNotCreatedWithoutAPort) {
    platform.fail("interfaceMngGet", 3);
    EXPECT_FALSE(entity().initNetworkAcl());
    EXPECT_JOURNAL(trace("initNetworkAcl: aclInitialized=0"), "interfaceMngGet() -> 3",
                   error("interfaceMngGet failed."));
    EXPECT_EQ(entity().aclInitialized, 0U);
}

TEST_F(RemoteAccessList, GoesByItsPrefixWhenThePortHasNoName) {
    platform.fail("interfaceLinuxnameGet", 3);
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_JOURNAL(trace("initNetworkAcl: aclInitialized=0"), portFound,
                   "interfaceLinuxnameGet(1, 37) -> 3",
                   error("initNetworkAcl: function interfaceLinuxnameGet has failed! portID: 1."),
                   trace("initNetworkAcl: aclNameStr: RA_."), R"(createACL("RA_", 4) -> 0)",
                   R"(createRule("RA_", deny, 201) -> 0 101)",
                   R"(addCondition("RA_", 101, {1 20 0 0.0.0.0 0.0.0.0}) -> 0)",
                   trace("initNetworkAcl: addCondition ok."), "fflush(all)");
}

TEST_F(RemoteAccessList, TakesPortNamesOf36Characters) {
    const std::string name(36, 'p');
    platform.shelf.portNames[1] = name;
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_EQ(entity().aclName, "RA_" + name);
    journal();
}

TEST_F(RemoteAccessList, ForgetsTheNameOfAnEarlierAttempt) {
    platform.shelf.portNames[1] = std::string(36, 'p');
    platform.fail("createACL", 5, 1);
    EXPECT_FALSE(entity().initNetworkAcl());
    platform.shelf.portNames[1] = std::string(37, 'p');  // one too many
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_STREQ(entity().aclName, "RA_");
    journal();
}

TEST_F(RemoteAccessList, ThatCannotBeCreatedIsReported) {
    platform.fail("createACL", -5);
    EXPECT_FALSE(entity().initNetworkAcl());
    EXPECT_JOURNAL(listNamed, R"(createACL("RA_mng0", 4) -> -5)",
                   error("initNetworkAcl: createACL(RA_mng0): faild! Remote access filtering "
                         "will not be able to work! Return value: -5"));
    EXPECT_EQ(entity().aclInitialized, 0U);
}

TEST_F(RemoteAccessList, IsDeletedAgainWithoutItsCatchAll) {
    platform.fail("createRule", 6);
    EXPECT_FALSE(entity().initNetworkAcl());
    EXPECT_JOURNAL(listNamed, R"(createACL("RA_mng0", 4) -> 0)",
                   R"(createRule("RA_mng0", deny, 201) -> 6)",
                   error("initNetworkAcl: createRule failed. Return value: 6"),
                   R"(deleteACL("RA_mng0") -> 0)");
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_THAT(platform.accessLists.lists, IsEmpty());
}

TEST_F(RemoteAccessList, StandsWithACatchAllWithoutCondition) {
    platform.fail("addCondition", 7);
    EXPECT_TRUE(entity().initNetworkAcl());
    EXPECT_JOURNAL(listNamed, R"(createACL("RA_mng0", 4) -> 0)", catchAllCreated,
                   R"(addCondition("RA_mng0", 101, {1 20 0 0.0.0.0 0.0.0.0}) -> 7)",
                   error("initNetworkAcl: addCondition faile. ruleId=101, Return value: 7"),
                   trace("initNetworkAcl: addCondition ok."), "fflush(all)");
    EXPECT_EQ(entity().aclInitialized, 1U);
}

TEST_F(RemoteAccessList, IsDestroyedWithItsRules) {
    addRules(2);
    EXPECT_TRUE(entity().destroyNetworkAcl());
    EXPECT_JOURNAL(R"(delCondition("RA_mng0", 101, 1) -> 0)", R"(delRuleById("RA_mng0", 101) -> 0)",
                   R"(deleteACL("RA_mng0") -> 0)");
    EXPECT_THAT(platform.accessLists.lists, IsEmpty());
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().getAclIdx(), 2U) << "the rules are not forgotten";
    journal();
}

TEST_F(RemoteAccessList, ThatDoesNotStandNeedsNoDestruction) {
    EXPECT_TRUE(entity().destroyNetworkAcl());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(RemoteAccessList, IsDestroyedThoughItsCatchAllResists) {
    EXPECT_TRUE(entity().initNetworkAcl());
    journal();
    platform.fail("delCondition", 4);
    platform.fail("delRuleById", -5);
    EXPECT_TRUE(entity().destroyNetworkAcl());
    EXPECT_JOURNAL(R"(delCondition("RA_mng0", 101, 1) -> 4)",
                   error("destroyNetworkAcl: delCondition faile. Return value: 4"),
                   R"(delRuleById("RA_mng0", 101) -> -5)",
                   error("destroyNetworkAcl: delRule faile. Return value: -5"),
                   R"(deleteACL("RA_mng0") -> 0)");
    EXPECT_EQ(entity().aclInitialized, 0U);
}

TEST_F(RemoteAccessList, ThatCannotBeDestroyedStands) {
    EXPECT_TRUE(entity().initNetworkAcl());
    journal();
    platform.fail("deleteACL", 6);
    EXPECT_FALSE(entity().destroyNetworkAcl());
    EXPECT_JOURNAL(R"(delCondition("RA_mng0", 101, 1) -> 0)", R"(delRuleById("RA_mng0", 101) -> 0)",
                   R"(deleteACL("RA_mng0") -> 6)",
                   error("destroyNetworkAcl: deleteACL(RA_mng0): faild! Remote access "
                         "filtering will not be able to work anymore! Return value: 6"));
    EXPECT_EQ(entity().aclInitialized, 1U);
}

TEST_F(RemoteAccessList, IsForgottenWithoutTouchingTheBridge) {
    addRules(3);
    entity().networkRAClear();
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_EQ(entity().getAclIdx(), 0U);
    journal();
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().aclAssigned, 0U);
    EXPECT_EQ(entity().defaultRuleId, 101U) << "this alone stays";
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 104, 101));
}

// Adding rules.

using RemoteAccess = StandingRemoteAccess;

TEST_F(RemoteAccess, FirstRuleBindsTheList) {
    EXPECT_EQ(addOwnNetwork(0), 0);
    EXPECT_JOURNAL(exclusively(firstAppended, ruleAdded("102", "1"), bound));
    EXPECT_THAT(rules(), ElementsAre("1 permit 192.0.2.0/255.255.255.0"));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 101));
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccess, FurtherRuleTakesTheListOffAndBindsItAgain) {
    addRules(1);
    EXPECT_EQ(networkAddRARule(0xc0000207, 0xffffff00, 0, 0), 0);
    EXPECT_JOURNAL(exclusively(ruleCorrected, listStands, unbound, appended,
                               ruleAdded("103", "2", "deny, 0"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 deny 192.0.2.0/255.255.255.0"));
}

TEST_F(RemoteAccess, ListThatCouldNotBeCreatedAtStartIsCreatedWithTheFirstRule) {
    remakeEntity();
    platform.accessLists = {};
    journal();
    logEverything();
    EXPECT_EQ(addOwnNetwork(0), 0);
    EXPECT_JOURNAL(exclusively(ruleCorrected, listCreated, wasUnbound, appended,
                               ruleAdded("102", "1"), bound));
}

TEST_F(RemoteAccess, RuleIsRefusedWhileTheListCannotBeCreated) {
    remakeEntity();
    journal();
    logEverything();
    platform.fail("interfaceMngGet", 3);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(ruleCorrected, trace("initNetworkAcl: aclInitialized=0"),
                               "interfaceMngGet() -> 3", error("interfaceMngGet failed.")));
    EXPECT_THAT(rules(), IsEmpty());
}

TEST_F(RemoteAccess, RuleIsInsertedAtItsPosition) {
    addRules(5);
    EXPECT_EQ(addOwnNetwork(3), 0);
    EXPECT_JOURNAL(exclusively(ruleCorrected, listStands, unbound,
                               trace("addRARule: sequenceNumber=3"),
                               ruleAdded("107", "6", "permit, 3"), bound));
    EXPECT_THAT(rules(),
                ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 permit 10.0.2.0/255.255.255.0",
                            "3 permit 192.0.2.0/255.255.255.0", "4 permit 10.0.3.0/255.255.255.0",
                            "5 permit 10.0.4.0/255.255.255.0", "6 permit 10.0.5.0/255.255.255.0"));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 107, 104, 105, 106, 101));
}

TEST_F(RemoteAccess, RuleIsInsertedAtTheFrontAndBeforeTheLast) {
    addRules(2);
    EXPECT_EQ(addOwnNetwork(1), 0);
    EXPECT_EQ(networkAddRARule(0xc6336400, 0xffffff00, 0, 3), 0);
    EXPECT_THAT(
        rules(),
        ElementsAre("1 permit 192.0.2.0/255.255.255.0", "2 permit 10.0.1.0/255.255.255.0",
                    "3 deny 198.51.100.0/255.255.255.0", "4 permit 10.0.2.0/255.255.255.0"));
}

TEST_F(RemoteAccess, IndexPastTheEndAppends) {
    addRules(2);
    for (const auto& [index, text] :
         {std::pair{3U, "3"}, {200U, "200"}, {201U, "201"}, {4294967295U, "-1"}}) {
        EXPECT_EQ(addOwnNetwork(index), 0);
        const Entries entries = journal();
        const std::string count = std::to_string(entity().ruleIdx - 1);
        EXPECT_EQ(entries[1], trace("addRARule: index(" + std::string(text) +
                                    ") bigger than ruleIdx(" + count + ")."));
        EXPECT_THAT(entries, testing::Contains(appended));
        EXPECT_THAT(entries,
                    testing::Contains(testing::StartsWith(R"(createRule("RA_mng0", permit, 0))")));
    }
    EXPECT_THAT(
        rules(),
        ElementsAre("1 permit 10.0.1.0/255.255.255.0", "2 permit 10.0.2.0/255.255.255.0",
                    "3 permit 192.0.2.0/255.255.255.0", "4 permit 192.0.2.0/255.255.255.0",
                    "5 permit 192.0.2.0/255.255.255.0", "6 permit 192.0.2.0/255.255.255.0"));
}

TEST_F(RemoteAccess, IndexPastTheEndIsToldAndForgotten) {
    addRules(2);
    EXPECT_EQ(addOwnNetwork(4), 0);
    EXPECT_JOURNAL(exclusively(trace("addRARule: index(4) bigger than ruleIdx(2)."), ruleCorrected,
                               listStands, unbound, appended, ruleAdded("104", "3"), bound));
    EXPECT_THAT(bridgeRules(), ElementsAre(102, 103, 104, 101));
}

TEST_F(RemoteAccess, FirstRuleMayBeAskedForAtAnyPosition) {
    EXPECT_EQ(addOwnNetwork(1), 0);
    EXPECT_THAT(journal(), testing::IsSupersetOf(
                               {trace("addRARule: index(1) bigger than ruleIdx(0)."), appended}));
    EXPECT_THAT(rules(), ElementsAre("1 permit 192.0.2.0/255.255.255.0"));
}

struct RuleCase {
    unsigned int address;
    unsigned int mask;
    std::string condition;
    std::string rule;
};

TEST_F(RemoteAccess, MaskIsCutAtItsFirstHoleAndTheAddressToItsNetwork) {
    for (const RuleCase& added :
         {RuleCase{0xc0a80305, 0xffff00ff, "192.168.0.0 0.0.255.255", "192.168.0.0/255.255.0.0"},
          {0xc0a80305, 0xff00ff00, "192.0.0.0 0.255.255.255", "192.0.0.0/255.0.0.0"},
          {0xc0a80305, 0xffffffff, "192.168.3.5 0.0.0.0", "192.168.3.5/255.255.255.255"},
          {0xc0a80305, 0xfffffffe, "192.168.3.4 0.0.0.1", "192.168.3.4/255.255.255.254"},
          {0xc0a80305, 0x80000000, "128.0.0.0 127.255.255.255", "128.0.0.0/128.0.0.0"},
          {0xc0a80305, 0x7fffffff, "0.0.0.0 255.255.255.255", "0.0.0.0/0.0.0.0"},
          {0xffffffff, 0, "0.0.0.0 255.255.255.255", "0.0.0.0/0.0.0.0"}}) {
        EXPECT_EQ(networkAddRARule(added.address, added.mask, 1, 1), 0);
        EXPECT_THAT(journal(),
                    testing::Contains(testing::HasSubstr("{1 20 0 " + added.condition + "}")));
        EXPECT_EQ(rules().front(), "1 permit " + added.rule);
    }
}

TEST_F(RemoteAccess, AnyValueButZeroPermits) {
    for (const int permit : {0, 1, 2, -1, 256}) {
        EXPECT_EQ(networkAddRARule(0xc0000207, 0xffffff00, permit, 1), 0);
        EXPECT_THAT(rules().front(), testing::StartsWith(permit == 0 ? "1 deny" : "1 permit"));
    }
}

TEST_F(RemoteAccess, RuleIsRefusedWhenTheListCannotBeTakenOff) {
    addRules(1);
    platform.fail("deassignACL", 4, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(ruleCorrected, listStands, notTakenOff("4")));
    platform.fail("interfaceMngGet", 3, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(ruleCorrected, listStands, portNotFound));
    EXPECT_THAT(rules(), ElementsAre("1 permit 10.0.1.0/255.255.255.0"));
    EXPECT_TRUE(isBound());
}

// With no rule yet, that leaves the catch-all bound by itself.
TEST_F(RemoteAccess, ListIsBoundAgainWhenTheRuleCannotBeCreated) {
    platform.fail("createRule", 5, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(firstAppended, R"(createRule("RA_mng0", permit, 0) -> 5)",
                               error("addRARule: createRule failed. Return value: 5"), bound));
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccess, ListThatCannotBeBoundAgainAfterThatIsReported) {
    addRules(1);
    platform.fail("createRule", 5, 1);
    platform.fail("assignACL", 6, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(
        ruleCorrected, listStands, unbound, appended, R"(createRule("RA_mng0", permit, 0) -> 5)",
        error("addRARule: createRule failed. Return value: 5"), notBound("6"),
        error("addRARule: assignNetworkAcl failed. Return value: 0")));
    EXPECT_THAT(rules(), ElementsAre("1 permit 10.0.1.0/255.255.255.0"));
    EXPECT_FALSE(isBound());
}

TEST_F(RemoteAccess, CatchAllThatCannotBeMovedIsReportedAndShadowsTheRule) {
    platform.fail("changeRuleSequenceNumber", 5, 1);
    EXPECT_EQ(addOwnNetwork(0), 0);
    EXPECT_JOURNAL(exclusively(firstAppended, R"(createRule("RA_mng0", permit, 0) -> 0 102)",
                               trace("addRARule: createRule ok (ruleId=102)."),
                               R"(changeRuleSequenceNumber("RA_mng0", 101, 201) -> 5)",
                               error("addRARule: changeRuleSequenceNumber failed. Return value: 5"),
                               trace("addRARule: i=1, ruleIdx=1"),
                               R"(addCondition("RA_mng0", 102, {1 20 0 192.0.2.0 0.0.0.255}) -> 0)",
                               trace("addRARule: addCondition ok."), bound));
    EXPECT_THAT(bridgeRules(), ElementsAre(101, 102));
}

TEST_F(RemoteAccess, RuleWhoseConditionFailsStaysInTheListWithoutOne) {
    platform.fail("addCondition", -5, 1);
    EXPECT_EQ(addOwnNetwork(0), 0);
    EXPECT_JOURNAL(
        exclusively(firstAppended, R"(createRule("RA_mng0", permit, 0) -> 0 102)",
                    trace("addRARule: createRule ok (ruleId=102)."), catchAllMoved,
                    trace("addRARule: i=1, ruleIdx=1"),
                    R"(addCondition("RA_mng0", 102, {1 20 0 192.0.2.0 0.0.0.255}) -> -5)",
                    error("addRARule: addCondition faile. ruleId=102, Return value: -5"),
                    trace("addRARule: addCondition ok."), bound));

    // Reading it leaves the caller's address, and complements the caller's mask.
    Network::RemoteAccessRule rule{77, 0x01020304, 0xff000000, false};
    EXPECT_EQ(networkIterateRules(0, &rule), 0);
    EXPECT_EQ(rule.sequenceNumber, 1U);
    EXPECT_EQ(rule.ipAddr, 0x01020304U);
    EXPECT_EQ(rule.netmask, 0x00ffffffU);
    EXPECT_TRUE(rule.permit);
    journal();
}

TEST_F(RemoteAccess, RuleIsInTheListThoughItCannotBeBound) {
    platform.fail("assignACL", 5, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(firstAppended, ruleAdded("102", "1"), notBound("5")));
    EXPECT_THAT(rules(), ElementsAre("1 permit 192.0.2.0/255.255.255.0"));
    EXPECT_FALSE(isBound());

    EXPECT_EQ(addOwnNetwork(0), 0) << "the next edit binds it";
    journal();
    EXPECT_TRUE(isBound());
}

TEST_F(RemoteAccess, PortThatCannotBeFoundIsReportedWhenTheListIsBound) {
    platform.fail("interfaceMngGet", 3, 1);
    EXPECT_EQ(addOwnNetwork(0), -1);
    EXPECT_JOURNAL(exclusively(firstAppended, ruleAdded("102", "1"),
                               trace("assignNetworkAcl: aclAssigned=0"), "interfaceMngGet() -> 3",
                               error("interfaceMngGet has failed!")));
}

TEST_F(RemoteAccess, ListThatIsBoundIsNotBoundAgain) {
    addRules(1);
    EXPECT_TRUE(entity().assignNetworkAcl());
    EXPECT_JOURNAL(trace("assignNetworkAcl: aclAssigned=1"));
}

TEST_F(RemoteAccess, TakesTwoHundredRulesAndRefusesTheNext) {
    addRules(200);
    EXPECT_EQ(entity().getAclIdx(), 200U);
    std::vector<std::string> expected;
    for (int number = 1; number <= 200; ++number) {
        expected.push_back(fmt::format("{} permit 10.0.{}.0/255.255.255.0", number, number));
    }
    EXPECT_THAT(rules(), ElementsAreArray(expected));

    const std::string full = error("addRARule: index(201) too big.");
    for (const unsigned int index : {0U, 1U, 200U}) {
        EXPECT_EQ(addOwnNetwork(index), -1);
        EXPECT_JOURNAL(exclusively(full));
    }
    for (const auto& [index, text] : {std::pair{201U, "201"}, {4294967295U, "-1"}}) {
        EXPECT_EQ(addOwnNetwork(index), -1);
        EXPECT_JOURNAL(exclusively(
            trace("addRARule: index(" + std::string(text) + ") bigger than ruleIdx(200)."), full));
    }
    EXPECT_THAT(rules(), ElementsAreArray(expected));
    EXPECT_TRUE(isBound());
    EXPECT_EQ(entity().defaultRuleId, 101U) << "the word behind the ids";
}

TEST_F(RemoteAccess, TwoHundredthRuleMayShiftAllOthers) {
    addRules(199);
    EXPECT_EQ(addOwnNetwork(1), 0);
    const std::vector<std::string> all = rules();
    ASSERT_EQ(all.size(), 200U);
    EXPECT_EQ(all[0], "1 permit 192.0.2.0/255.255.255.0");
    EXPECT_EQ(all[1], "2 permit 10.0.1.0/255.255.255.0");
    EXPECT_EQ(all[199], "200 permit 10.0.199.0/255.255.255.0");
    EXPECT_EQ(entity().defaultRuleId, 101U);
    EXPECT_EQ(entity().ruleIdx, 200U);
}

}  // namespace
