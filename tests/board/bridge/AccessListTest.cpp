// What a container of access lists keeps, with nothing behind it.

#include "BridgeTest.h"
#include "board/framework/Framework.h"

using test::from;
using test::ip;
using test::slash24;

namespace {

constexpr auto remoteAccess = ACLContainer_t::aclRemoteAccess;

class AccessListTest : public test::BridgeTest {
protected:
    AccessListTest() { EXPECT_EQ(acls().createACL(list, remoteAccess), 0); }

    unsigned int newRule(unsigned int place = 0) {
        unsigned int id = 0;
        EXPECT_EQ(acls().createRule(list, true, id, place), 0);
        return id;
    }
};

}  // namespace

TEST_F(AccessListTest, RulesAreAppendedByZeroAndByPlacesPastTheEnd) {
    const unsigned int a = newRule(201);
    const unsigned int b = newRule(0);
    const unsigned int c = newRule(4);
    const unsigned int d = newRule(4);
    EXPECT_THAT(idsOf(list, {a, b, c, d}), ElementsAre(a, b, c, d));
}

TEST_F(AccessListTest, ARuleAtAPlaceMovesThoseBehind) {
    const unsigned int a = newRule();
    const unsigned int b = newRule();
    const unsigned int c = newRule(2);
    const unsigned int d = newRule(1);
    EXPECT_THAT(idsOf(list, {a, b, c, d}), ElementsAre(d, a, c, b));
}

TEST_F(AccessListTest, AMovedRuleIsTakenOutFirst) {
    const unsigned int a = newRule();
    const unsigned int b = newRule();
    const unsigned int c = newRule();
    EXPECT_EQ(acls().changeRuleSequenceNumber(list, a, 2), 0);
    EXPECT_THAT(idsOf(list, {a, b, c}), ElementsAre(b, a, c));
    EXPECT_EQ(acls().changeRuleSequenceNumber(list, b, 201), 0);
    EXPECT_THAT(idsOf(list, {a, b, c}), ElementsAre(a, c, b));
    EXPECT_EQ(acls().changeRuleSequenceNumber(list, b, 1), 0);
    EXPECT_EQ(acls().changeRuleSequenceNumber(list, a, 0), 0);
    EXPECT_THAT(idsOf(list, {a, b, c}), ElementsAre(b, c, a));
}

TEST_F(AccessListTest, ADeletedRuleLeavesNoGap) {
    const unsigned int a = newRule();
    const unsigned int b = newRule();
    const unsigned int c = newRule();
    EXPECT_EQ(acls().delRuleById(list, b), 0);
    EXPECT_THAT(idsOf(list, {a, c}), ElementsAre(a, c));
}

TEST_F(AccessListTest, IdsAreNotZeroAndNeverGivenTwice) {
    const unsigned int first = newRule();
    EXPECT_NE(first, 0U);
    EXPECT_EQ(acls().delRuleById(list, first), 0);
    EXPECT_EQ(acls().deleteACL(list), 0);
    EXPECT_EQ(acls().createACL(list, remoteAccess), 0);
    EXPECT_GT(newRule(), first);
}

TEST_F(AccessListTest, ARuleTellsItsPlaceActionAndCondition) {
    newRule();
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, false, id, 0), 0);
    ACLContainer_t::aclRule_t rule{};
    EXPECT_EQ(acls().getACLRule(list, id, rule), 0);
    EXPECT_EQ(rule.sequenceNumber, 2U);
    EXPECT_FALSE(rule.permit);
    EXPECT_THAT(rule.conditions, IsEmpty());

    EXPECT_EQ(acls().addCondition(list, id, from(ip(192, 0, 2, 0), slash24)), 0);
    EXPECT_EQ(acls().getACLRule(list, id, rule), 0);
    ASSERT_EQ(rule.conditions.size(), 1U);
    EXPECT_EQ(rule.conditions[0].kind, 1U);
    EXPECT_EQ(rule.conditions[0].selector, 20U);
    EXPECT_EQ(rule.conditions[0].flags, 0U);
    EXPECT_EQ(rule.conditions[0].address, 0xc0000200U);
    EXPECT_EQ(rule.conditions[0].wildcard, 0xffU);

    EXPECT_EQ(acls().delCondition(list, id, 1), 0);
    EXPECT_EQ(acls().getACLRule(list, id, rule), 0);
    EXPECT_THAT(rule.conditions, IsEmpty());
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(AccessListTest, AListIsUnknownUntilItIsMadeAndAfterItWasDeleted) {
    const unsigned int id = newRule();
    ACLContainer_t::aclRule_t rule{};
    unsigned int made = 7;
    const auto refusals = [&](const std::string& name) {
        return std::vector<int>{acls().createRule(name, true, made, 0),
                                acls().delRuleById(name, id),
                                acls().addCondition(name, id, from(0, 0)),
                                acls().delCondition(name, id, 1),
                                acls().changeRuleSequenceNumber(name, id, 1),
                                acls().assignACL(name, 1, false, 0),
                                acls().deassignACL(name, 1, false),
                                acls().getACLRule(name, id, rule),
                                acls().deleteACL(name)};
    };
    EXPECT_THAT(refusals("other"), AllOf(SizeIs(9), Each(bridge::unknownList)));
    EXPECT_EQ(made, 7U);
    EXPECT_THAT(
        newMessages(),
        AllOf(SizeIs(9), Contains("assignACL of access list \"other\": there is no such list")));
    EXPECT_EQ(acls().deleteACL(list), 0);
    EXPECT_THAT(refusals(list), Each(bridge::unknownList));
}

TEST_F(AccessListTest, RulesAndConditionsThatDoNotExistAreRefused) {
    const unsigned int id = newRule();
    ACLContainer_t::aclRule_t rule{};
    for (const unsigned int unknown : {0U, id + 1}) {
        EXPECT_EQ(acls().delRuleById(list, unknown), bridge::unknownRule);
        EXPECT_EQ(acls().addCondition(list, unknown, from(0, 0)), bridge::unknownRule);
        EXPECT_EQ(acls().delCondition(list, unknown, 1), bridge::unknownRule);
        EXPECT_EQ(acls().changeRuleSequenceNumber(list, unknown, 1), bridge::unknownRule);
        EXPECT_EQ(acls().getACLRule(list, unknown, rule), bridge::unknownRule);
    }
    newMessages();
    EXPECT_EQ(acls().delCondition(list, id, 1), bridge::unknownCondition);
    EXPECT_EQ(acls().addCondition(list, id, from(0, 0)), 0);
    EXPECT_EQ(acls().delCondition(list, id, 0), bridge::unknownCondition);
    EXPECT_EQ(acls().delCondition(list, id, 2), bridge::unknownCondition);
    const std::string refused = "delCondition of access list \"RA_mng0\": rule " +
                                std::to_string(id) + " has no condition ";
    EXPECT_THAT(newMessages(), ElementsAre(refused + "1", refused + "0", refused + "2"));
    EXPECT_EQ(acls().addCondition(list, id, from(1, 0)), bridge::conditionExists);
    EXPECT_THAT(newMessages(), ElementsAre("addCondition of access list \"RA_mng0\": rule " +
                                           std::to_string(id) + " has its condition"));
}

TEST_F(AccessListTest, ListsHaveNamesOfTheirOwnInEachContainer) {
    EXPECT_EQ(acls().createACL(list, remoteAccess), bridge::listExists);
    EXPECT_THAT(newMessages(), ElementsAre("createACL of access list \"RA_mng0\": there is a list "
                                           "of that name"));
    EXPECT_EQ(acls().createACL("other", remoteAccess), 0);
    ACLContainer_t second("br0", "acl");
    EXPECT_EQ(second.deleteACL(list), bridge::unknownList);
    EXPECT_EQ(second.createACL(list, remoteAccess), 0);
    EXPECT_EQ(acls().deleteACL(list), 0);
    EXPECT_EQ(second.deleteACL(list), 0);
}

TEST_F(AccessListTest, ListsGoWithTheirContainer) {
    {
        ACLContainer_t second("br0", "acl");
        EXPECT_EQ(second.createACL(list, remoteAccess), 0);
        EXPECT_EQ(second.assignACL(list, 1, false, 0), 0);
        EXPECT_EQ(acls().assignACL(list, 1, false, 0), bridge::portTaken);
    }
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
}

TEST_F(AccessListTest, WhatTheBridgeDoesNotFilterByIsRefused) {
    const unsigned int id = newRule();
    EXPECT_EQ(acls().createACL("other", static_cast<ACLContainer_t::aclType_t>(3)),
              bridge::unsupported);
    EXPECT_EQ(acls().addCondition(list, id, {2, 20, 0, 0, 0}), bridge::unsupported);
    EXPECT_EQ(acls().addCondition(list, id, {1, 21, 0, 0, 0}), bridge::unsupported);
    EXPECT_EQ(acls().addCondition(list, id, {1, 20, 1, 0, 0}), bridge::unsupported);
    EXPECT_EQ(acls().assignACL(list, 1, true, 0), bridge::unsupported);
    EXPECT_EQ(acls().deassignACL(list, 1, true), bridge::unsupported);
    const std::string ofList = " of access list \"RA_mng0\": ";
    EXPECT_THAT(
        newMessages(),
        ElementsAre(
            "createACL of access list \"other\": there are no lists of type 3",
            "addCondition" + ofList + "there are no conditions of kind 2, selector 20, flags 0",
            "addCondition" + ofList + "there are no conditions of kind 1, selector 21, flags 0",
            "addCondition" + ofList + "there are no conditions of kind 1, selector 20, flags 1",
            "assignACL" + ofList + "packets that leave a port are not filtered",
            "deassignACL" + ofList + "packets that leave a port are not filtered"));
}

TEST_F(AccessListTest, NamesArePrintable) {
    EXPECT_EQ(acls().createACL("", remoteAccess), bridge::invalidName);
    EXPECT_THAT(newMessages(), ElementsAre("createACL of access list \"\": a name has 1 to 100 "
                                           "printable characters"));
    EXPECT_EQ(acls().createACL("a\nb", remoteAccess), bridge::invalidName);
    EXPECT_EQ(acls().createACL("\xc3\xa4", remoteAccess), bridge::invalidName);
    EXPECT_EQ(acls().createACL(std::string(101, 'a'), remoteAccess), bridge::invalidName);
    EXPECT_EQ(acls().createACL(std::string(100, 'a'), remoteAccess), 0);
}

TEST_F(AccessListTest, AListIsOnOnePortAndAPortHasOneList) {
    EXPECT_EQ(acls().createACL("other", remoteAccess), 0);
    EXPECT_EQ(acls().deassignACL(list, 1, false), bridge::notAssigned);
    EXPECT_EQ(acls().assignACL(list, 3, false, 0), bridge::unknownPort);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), bridge::listAssigned);
    EXPECT_EQ(acls().assignACL(list, 2, false, 0), bridge::listAssigned);
    EXPECT_EQ(acls().assignACL("other", 1, false, 5), bridge::portTaken);
    EXPECT_EQ(acls().assignACL("other", 2, false, 0), 0);
    EXPECT_EQ(acls().deassignACL(list, 2, false), bridge::notAssigned);
    EXPECT_THAT(
        newMessages(),
        ElementsAre("deassignACL of access list \"RA_mng0\": it is not assigned to port 1",
                    "assignACL of access list \"RA_mng0\": there is no port 3",
                    "assignACL of access list \"RA_mng0\": it is assigned to port 1 already",
                    "assignACL of access list \"RA_mng0\": it is assigned to port 1 already",
                    "assignACL of access list \"other\": port 1 has the list \"RA_mng0\"",
                    "deassignACL of access list \"RA_mng0\": it is not assigned to port 2"));
    EXPECT_EQ(acls().deassignACL(list, 1, false), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
}

TEST_F(AccessListTest, WithoutAFilterNothingIsCounted) {
    try {
        framework::framework().ruleCounters();
        FAIL() << "counted";
    } catch (const bridge::Failure& failure) {
        EXPECT_STREQ(failure.what(), "nothing is filtered here, and nothing counted");
    }
}

TEST_F(AccessListTest, ADeletedListIsOffItsPort) {
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_EQ(acls().deleteACL(list), 0);
    EXPECT_EQ(acls().createACL(list, remoteAccess), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
}
