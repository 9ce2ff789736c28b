// What every implementation of the bridge's access lists keeps.

#include "contract/Environment.h"
#include "platform/acl.h"
#include "support/matchers.h"

#include <string>
#include <vector>

namespace {

constexpr int managementPort = 1;

const std::string list = "RA_mng0";

zubridge_acl_condition from(unsigned int address, unsigned int wildcard) {
    return {1, 20, 0, address, wildcard};
}

class AccessListContract : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(acls.createACL(list, ACLContainer_t::aclRemoteAccess), 0); }

    unsigned int rule(unsigned int place, bool permit = true) {
        unsigned int id = 0;
        EXPECT_EQ(acls.createRule(list, permit, id, place), 0);
        EXPECT_NE(id, 0U);
        return id;
    }

    unsigned int placeOf(unsigned int id) {
        ACLContainer_t::aclRule_t rule{};
        EXPECT_EQ(acls.getACLRule(list, id, rule), 0);
        return rule.sequenceNumber;
    }

    Environment environment;
    ACLContainer_t acls{"br0", "acl"};
};

TEST_F(AccessListContract, AListHasOneName) {
    EXPECT_NE(acls.createACL(list, ACLContainer_t::aclRemoteAccess), 0);
    EXPECT_EQ(acls.deleteACL(list), 0);
    EXPECT_NE(acls.deleteACL(list), 0);
    EXPECT_EQ(acls.createACL(list, ACLContainer_t::aclRemoteAccess), 0);
}

TEST_F(AccessListContract, NothingIsDoneToAListThatIsNotThere) {
    unsigned int id = 77;
    ACLContainer_t::aclRule_t rule{};
    EXPECT_NE(acls.createRule("other", true, id, 0), 0);
    EXPECT_EQ(id, 77U);
    EXPECT_NE(acls.delRuleById("other", 1), 0);
    EXPECT_NE(acls.addCondition("other", 1, from(0, 0)), 0);
    EXPECT_NE(acls.delCondition("other", 1, 1), 0);
    EXPECT_NE(acls.changeRuleSequenceNumber("other", 1, 1), 0);
    EXPECT_NE(acls.assignACL("other", managementPort, false, 1), 0);
    EXPECT_NE(acls.deassignACL("other", managementPort, false), 0);
    EXPECT_NE(acls.getACLRule("other", 1, rule), 0);
}

TEST_F(AccessListContract, SequenceNumbersArePlaces) {
    const unsigned int last = rule(201);
    const unsigned int first = rule(1);
    const unsigned int second = rule(2);
    EXPECT_THAT((std::vector{placeOf(first), placeOf(second), placeOf(last)}),
                ElementsAre(1, 2, 3));
    const unsigned int appended = rule(0);
    EXPECT_EQ(placeOf(appended), 4U);
    EXPECT_EQ(acls.changeRuleSequenceNumber(list, last, 201), 0);
    EXPECT_THAT((std::vector{placeOf(appended), placeOf(last)}), ElementsAre(3, 4));
    EXPECT_EQ(acls.changeRuleSequenceNumber(list, last, 1), 0);
    EXPECT_THAT((std::vector{placeOf(last), placeOf(first), placeOf(second), placeOf(appended)}),
                ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(acls.delRuleById(list, first), 0);
    EXPECT_THAT((std::vector{placeOf(last), placeOf(second), placeOf(appended)}),
                ElementsAre(1, 2, 3));
}

TEST_F(AccessListContract, IdsAreNotGivenTwice) {
    const unsigned int gone = rule(0);
    EXPECT_EQ(acls.delRuleById(list, gone), 0);
    EXPECT_NE(acls.delRuleById(list, gone), 0);
    EXPECT_NE(rule(0), gone);
    EXPECT_NE(acls.delRuleById(list, 0), 0);
}

TEST_F(AccessListContract, ARuleHasOneConditionAtMost) {
    const unsigned int id = rule(0, false);
    ACLContainer_t::aclRule_t read{};
    EXPECT_EQ(acls.getACLRule(list, id, read), 0);
    EXPECT_FALSE(read.permit);
    EXPECT_TRUE(read.conditions.empty());
    EXPECT_NE(acls.delCondition(list, id, 1), 0);
    EXPECT_EQ(acls.addCondition(list, id, from(0xc0000200, 0xff)), 0);
    EXPECT_NE(acls.addCondition(list, id, from(0xc0000300, 0xff)), 0);
    EXPECT_EQ(acls.getACLRule(list, id, read), 0);
    ASSERT_EQ(read.conditions.size(), 1U);
    EXPECT_EQ(read.conditions[0].kind, 1U);
    EXPECT_EQ(read.conditions[0].selector, 20U);
    EXPECT_EQ(read.conditions[0].address, 0xc0000200);
    EXPECT_EQ(read.conditions[0].wildcard, 0xffU);
    EXPECT_NE(acls.delCondition(list, id, 2), 0);
    EXPECT_EQ(acls.delCondition(list, id, 1), 0);
    EXPECT_EQ(acls.addCondition(list, id, from(0, 0)), 0);
}

TEST_F(AccessListContract, AListIsBoundOnce) {
    EXPECT_NE(acls.deassignACL(list, managementPort, false), 0);
    EXPECT_EQ(acls.assignACL(list, managementPort, false, 1), 0);
    EXPECT_NE(acls.assignACL(list, managementPort, false, 1), 0);
    EXPECT_EQ(acls.createACL("second", ACLContainer_t::aclRemoteAccess), 0);
    EXPECT_NE(acls.assignACL("second", managementPort, false, 2), 0);
    EXPECT_EQ(acls.deassignACL(list, managementPort, false), 0);
    EXPECT_EQ(acls.assignACL("second", managementPort, false, 2), 0);
    EXPECT_EQ(acls.deleteACL("second"), 0);
    EXPECT_EQ(acls.assignACL(list, managementPort, false, 1), 0);
}

}  // namespace
