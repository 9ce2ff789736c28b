// Access lists on the kernel's packet filter, with packets.

#include "FilterFixture.h"
#include "board/framework/Framework.h"
#include "board/support/addresses.h"

#include <sstream>

using test::FilterFixture;
using test::from;
using test::ip;
using test::onHost;
using test::UdpSocket;

namespace test {

FilterFixture::FilterFixture() {
    configuration.filterTable = "networkble_acl";
    restart();
}

void FilterFixture::TearDown() { shell("nft flush ruleset"); }

std::vector<std::string> FilterFixture::counters() {
    std::vector<std::string> lines;
    for (const framework::RuleCounter& rule : framework::framework().ruleCounters()) {
        lines.push_back((rule.permit ? "permit " : "deny ") + support::ipv4Text(rule.address) +
                        " " + support::ipv4Text(rule.netmask) + " " + std::to_string(rule.packets) +
                        " packets " + std::to_string(rule.bytes) + " bytes");
    }
    return lines;
}

std::vector<std::string> FilterFixture::chain() {
    std::istringstream text(
        shell("nft -a list table inet networkble_acl | "
              "sed -n '/chain acl/,/}/{s/^\\t\\t//p}'"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace test

namespace {

/// A packet of Probe: IPv4 and UDP headers, and the source as text.
constexpr int headerSize = 28;

class FilterTest : public FilterFixture {};

}  // namespace

TEST_F(FilterTest, WithoutRulesEverybodyPasses) {
    product.start();
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7"}),
                ElementsAre("192.0.2.2", "198.51.100.7"));
}

TEST_F(FilterTest, TheFirstRuleThatMatchesDecides) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "192.0.2.3"}),
                ElementsAre("192.0.2.2", "192.0.2.3"));
    EXPECT_EQ(product.add(ip(192, 0, 2, 3), hostMask, false, 1), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "192.0.2.3"}), ElementsAre("192.0.2.2"));
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "192.0.2.3", "203.0.113.9"}),
                ElementsAre("192.0.2.2", "198.51.100.7"));
    EXPECT_EQ(product.remove(1), 0);
    EXPECT_TRUE(probe.takes("192.0.2.3"));
    EXPECT_EQ(product.add(0, 0, true, 1), 0);
    EXPECT_TRUE(probe.takes("203.0.113.9"));
    EXPECT_THAT(newMessages(), IsEmpty());
}

TEST_F(FilterTest, WithTheLastRuleTheFilterIsOffThePort) {
    product.start();
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    EXPECT_EQ(product.remove(1), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
}

TEST_F(FilterTest, WildcardsMayHaveHoles) {
    EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, false, id, 0), 0);
    // Every address that begins with 198 and ends with 7; bits under the wildcard do not count.
    EXPECT_EQ(acls().addCondition(list, id, from(ip(198, 1, 1, 7), 0x00ffff00)), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_THAT(probe.taken({"192.0.2.2", "198.51.100.7", "203.0.113.9"}),
                ElementsAre("192.0.2.2", "203.0.113.9"));
}

TEST_F(FilterTest, ARuleWithoutAConditionMatchesNothing) {
    EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, false, id, 0), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_EQ(acls().addCondition(list, id, from(0, 0)), 0);
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    EXPECT_EQ(acls().delCondition(list, id, 1), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
}

TEST_F(FilterTest, OnlyThePortOfTheListIsFiltered) {
    EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), 0);
    unsigned int id = 0;
    EXPECT_EQ(acls().createRule(list, false, id, 0), 0);
    EXPECT_EQ(acls().addCondition(list, id, from(0, 0)), 0);
    EXPECT_EQ(acls().assignACL(list, 2, false, 0), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_EQ(acls().deassignACL(list, 2, false), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_FALSE(probe.takes("192.0.2.2"));
    EXPECT_EQ(acls().deleteACL(list), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
}

TEST_F(FilterTest, AnswersToTheBoardPassWhateverTheRules) {
    product.start();
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    std::optional<UdpSocket> server;
    onHost([&] { server.emplace("192.0.2.2", static_cast<unsigned short>(5300)); });
    const UdpSocket client("192.0.2.1");
    client.send("192.0.2.2", 5300, "question");
    EXPECT_EQ(server->receive(), "question");
    server->send("192.0.2.1", client.port(), "answer");
    EXPECT_EQ(client.receive(), "answer");
    // The same host asks from another port: that is no answer.
    EXPECT_FALSE(probe.takes("192.0.2.2"));
}

TEST_F(FilterTest, CountersTellWhatTheRulesHaveMatched) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_EQ(product.add(office, hostMask, false), 0);
    EXPECT_EQ(probe.countTaken("192.0.2.2", 3), 3);
    EXPECT_EQ(probe.countTaken("203.0.113.9", 2), 0);
    const auto lines = counters();
    EXPECT_THAT(lines, ElementsAre("permit 192.0.2.0 255.255.255.0 3 packets " +
                                       std::to_string(3 * (headerSize + 9)) + " bytes",
                                   "deny 198.51.100.7 255.255.255.255 0 packets 0 bytes",
                                   "deny 0.0.0.0 0.0.0.0 2 packets " +
                                       std::to_string(2 * (headerSize + 11)) + " bytes"));
}

TEST_F(FilterTest, AnEditLeavesTheOtherRulesAndAllCountersAlone) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_EQ(product.add(office, hostMask, true), 0);
    EXPECT_EQ(probe.countTaken("192.0.2.2", 3), 3);
    EXPECT_EQ(probe.countTaken("198.51.100.7", 1), 1);
    EXPECT_EQ(probe.countTaken("203.0.113.9", 2), 0);
    const auto before = chain();
    ASSERT_EQ(before.size(), 3U);

    EXPECT_EQ(product.add(ip(203, 0, 113, 9), hostMask, true, 1), 0);
    EXPECT_EQ(product.add(ip(203, 0, 113, 8), hostMask, false), 0);
    const auto after = chain();
    ASSERT_EQ(after.size(), 5U);
    EXPECT_THAT(after, ElementsAre(HasSubstr("203.0.113.9 counter"), before[0], before[1],
                                   HasSubstr("203.0.113.8 counter"), before[2]));
    EXPECT_EQ(product.remove(2), 0);
    EXPECT_THAT(chain(), ElementsAre(after[0], before[1], after[3], before[2]));
    EXPECT_THAT(counters(), ElementsAre(HasSubstr("203.0.113.9 255.255.255.255 0 packets"),
                                        HasSubstr("198.51.100.7 255.255.255.255 1 packets"),
                                        HasSubstr("203.0.113.8 255.255.255.255 0 packets"),
                                        HasSubstr("deny 0.0.0.0 0.0.0.0 2 packets")));
}

TEST_F(FilterTest, AMovedRuleKeepsItsCount) {
    EXPECT_EQ(acls().createACL(list, ACLContainer_t::aclRemoteAccess), 0);
    unsigned int everybody = 0;
    unsigned int lanRule = 0;
    EXPECT_EQ(acls().createRule(list, false, everybody, 0), 0);
    EXPECT_EQ(acls().addCondition(list, everybody, from(0, 0)), 0);
    EXPECT_EQ(acls().createRule(list, true, lanRule, 0), 0);
    EXPECT_EQ(acls().addCondition(list, lanRule, from(lan, ~mask24)), 0);
    EXPECT_EQ(acls().assignACL(list, 1, false, 0), 0);
    EXPECT_EQ(probe.countTaken("192.0.2.2", 2), 0);
    EXPECT_EQ(acls().changeRuleSequenceNumber(list, everybody, 201), 0);
    EXPECT_EQ(probe.countTaken("192.0.2.2", 1), 1);
    EXPECT_THAT(counters(), ElementsAre(HasSubstr("permit 192.0.2.0 255.255.255.0 1 packets"),
                                        HasSubstr("deny 0.0.0.0 0.0.0.0 2 packets")));
}

TEST_F(FilterTest, TwoHundredRulesAreInOrder) {
    // Every change would be synchronised with the disk.
    configuration.stateDirectory.clear();
    restart();
    product.start();
    for (unsigned int number = 0; number < 199; ++number) {
        ASSERT_EQ(product.add(ip(10, 0, 0, number), hostMask, number % 2 == 0), 0);
    }
    EXPECT_EQ(product.add(lan, mask24, true, 100), 0);
    EXPECT_TRUE(probe.takes("192.0.2.2"));
    EXPECT_FALSE(probe.takes("203.0.113.9"));
    const auto lines = chain();
    ASSERT_EQ(lines.size(), 201U);
    EXPECT_THAT(lines[98], HasSubstr("ip saddr 10.0.0.98 "));
    EXPECT_THAT(lines[99], HasSubstr("ip saddr 192.0.2.0/24 "));
    EXPECT_THAT(lines[100], HasSubstr("ip saddr 10.0.0.99 "));
    EXPECT_EQ(counters().size(), 201U);
    while (!product.rules().empty()) {
        ASSERT_EQ(product.remove(static_cast<unsigned int>(product.rules().size())), 0);
    }
    EXPECT_EQ(chain().size(), 1U);
}

TEST_F(FilterTest, AListOfAnyNameHasAChainThatPeopleCanType) {
    EXPECT_EQ(acls().createACL("a \"b\"; {c}", ACLContainer_t::aclRemoteAccess), 0);
    EXPECT_THAT(ruleset(), HasSubstr("_a__b____c_ {"));
}

TEST_F(FilterTest, ListsAreGoneWithTheirContainer) {
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_THAT(ruleset(), HasSubstr("table inet networkble_acl"));
    configuration.filterTable.clear();
    restart();
    EXPECT_EQ(ruleset(), "");
}

TEST_F(FilterTest, TablesOfOthersAreLeftAlone) {
    shell(
        "nft add table inet other && nft add chain inet other input && "
        "nft add counter inet other rule1");
    const std::string before = ruleset();
    product.start();
    EXPECT_EQ(product.add(lan, mask24, true), 0);
    EXPECT_THAT(ruleset(), HasSubstr(before));
    product.remove(1);
    product.stop();
    EXPECT_EQ(ruleset(), before);
}
