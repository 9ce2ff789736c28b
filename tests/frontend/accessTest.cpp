#include "mngctl/commands/accessRules.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr Ipv4Network office{0xC0000200, 0xFFFFFF00};  // 192.0.2.0/24
constexpr Ipv4Network desk{0xC0000207, 0xFFFFFFFF};    // 192.0.2.7
constexpr Ipv4Network everybody{0, 0};

TEST(AccessAnswer, IsThatOfTheFirstRuleThatMatches) {
    const auto answer = [](std::vector<AccessRule> rules, unsigned address) {
        const AccessList list{std::move(rules)};
        return describeAnswer(list, evaluate(list, address));
    };
    EXPECT_EQ(answer({}, 0xC0000207), "admitted, as there is no rule");
    EXPECT_EQ(answer({{office, true}}, 0xC0000207), "admitted by rule 1 (permit 192.0.2.0/24)");
    EXPECT_EQ(answer({{office, true}}, 0xC0000307), "denied, as no rule matches");
    EXPECT_EQ(answer({{desk, false}, {office, true}}, 0xC0000207),
              "denied by rule 1 (deny 192.0.2.7/32)");
    EXPECT_EQ(answer({{desk, false}, {office, true}}, 0xC0000208),
              "admitted by rule 2 (permit 192.0.2.0/24)");
    EXPECT_EQ(answer({{office, true}, {desk, false}}, 0xC0000207),
              "admitted by rule 1 (permit 192.0.2.0/24)");
    EXPECT_EQ(answer({{desk, false}, {everybody, true}}, 0xFFFFFFFF),
              "admitted by rule 2 (permit 0.0.0.0/0)");
}

TEST(Access, ListsTheRulesWithWhatTheyMatched) {
    CannedBoard board;
    EXPECT_EQ(board.run("access list"), done("no rule: everybody is admitted\n"));
    EXPECT_THAT(board.requests(), ElementsAre("iterate_rules 0"));
    EXPECT_EQ(board.run("access permit 192.0.2.0/24 -q"), done(""));
    EXPECT_EQ(board.run("access deny 0.0.0.0/0"),
              done("No.  Answer  Network                  Packets            Bytes\n"
                   "  1  permit  192.0.2.0/24                   1       4294967296\n"
                   "  2  deny    0.0.0.0/0                      2       8589934592\n"
                   "everything else: denied (7 packets, 420 bytes)\n"));
    EXPECT_EQ(board.run("access list --json", Protocol::Udp), done(laidOut(R"({"rules": [{
                  "position": 1, "answer": "permit", "network": "192.0.2.0/24", "packets": 1,
                  "bytes": 4294967296},
                {"position": 2, "answer": "deny", "network": "0.0.0.0/0", "packets": 2,
                  "bytes": 8589934592}],
              "otherwise": {"answer": "deny", "packets": 7, "bytes": 420}})")));
    board.run("access clear");
    EXPECT_EQ(board.run("access list --json"), done(laidOut(R"({"rules": [],
              "otherwise": {"answer": "permit", "packets": null, "bytes": null}})")));
}

TEST(Access, ListsTheRulesAloneWhereTheBoardHasNoCountersOfThem) {
    for (const char* const counters : {"wrong", "failed", "none"}) {
        CannedBoard board({"--rules", "1", "--counters", counters});
        EXPECT_EQ(board.run("access list"), done("No.  Answer  Network\n"
                                                 "  1  permit  192.0.2.0/24\n"
                                                 "everything else: denied\n"))
            << counters;
        EXPECT_THAT(board.requests(),
                    ElementsAre("iterate_rules 0", "iterate_rules 1", "counters"));
        EXPECT_THAT(board.run("access list --json").out, testing::HasSubstr("\"packets\": null"));
    }
}

TEST(Access, AddsAtTheEndOrAtAPlace) {
    CannedBoard board({"--counters", "none"});
    board.run("access permit -q 192.0.2.0/24");
    board.run("access deny -q 0.0.0.0/0");
    EXPECT_EQ(board.run("access deny 192.0.2.7 --at 1"), done("No.  Answer  Network\n"
                                                              "  1  deny    192.0.2.7/32\n"
                                                              "  2  permit  192.0.2.0/24\n"
                                                              "  3  deny    0.0.0.0/0\n"
                                                              "everything else: denied\n"));
    EXPECT_EQ(board.run("access permit 198.51.100.0/255.255.255.0 --at 3"),
              done("No.  Answer  Network\n"
                   "  1  deny    192.0.2.7/32\n"
                   "  2  permit  192.0.2.0/24\n"
                   "  3  permit  198.51.100.0/24\n"
                   "  4  deny    0.0.0.0/0\n"
                   "everything else: denied\n"));
    EXPECT_EQ(board.run("access deny -q 203.0.113.0/24 --at 5"), done(""));
    const auto requests = board.requests();
    EXPECT_THAT(requests, Contains(R"(add_ra_rule {"ipAddress":"192.0.2.7",)"
                                   R"("netmask":"255.255.255.255","flag":false,"index":1})"));
    EXPECT_THAT(requests, Contains(R"(add_ra_rule {"ipAddress":"198.51.100.0",)"
                                   R"("netmask":"255.255.255.0","flag":true,"index":3})"));
    EXPECT_THAT(requests, Contains(R"(add_ra_rule {"ipAddress":"203.0.113.0",)"
                                   R"("netmask":"255.255.255.0","flag":false,"index":0})"));
}

TEST(Access, TellsWhichNetworkIsMeant) {
    CannedBoard board;
    EXPECT_EQ(board.run("access permit -q 192.0.2.7/24"),
              (Outcome{Exit::Done, "",
                       "mngctl: 192.0.2.7/24 has host bits; the rule is for 192.0.2.0/24\n"}));
    EXPECT_THAT(board.requests(), Contains(R"(add_ra_rule {"ipAddress":"192.0.2.0",)"
                                           R"("netmask":"255.255.255.0","flag":true,"index":0})"));
}

TEST(Access, RefusesNetworksAndPlacesThatAreWrong) {
    CannedBoard board({"--rules", "2"});
    const auto refused = [&](const std::string& words, const std::string& sentence) {
        EXPECT_EQ(board.run("access " + words), wrongUsage(sentence)) << words;
    };
    const std::string nobody = "0.0.0.0/32 is nobody's address: 0.0.0.0/0 stands for everybody";
    refused("permit 0.0.0.0", nobody);
    refused("deny 0.0.0.0/32", nobody);
    refused("permit 192.0.2.0/33", "expected a prefix length from 0 to 32, not '33'");
    refused("permit 192.0.2.0/255.0.255.0",
            "'255.0.255.0' is no mask: expected ones followed by zeros, such as 255.255.255.0");
    refused("permit 192.0.2/24",
            "expected an IPv4 address, four numbers from 0 to 255 with dots between such as "
            "192.0.2.1, not '192.0.2'");
    for (const char* const place : {"0", "201", "4294967297", "last"}) {
        refused(std::string("deny 192.0.2.7 --at ") + place,
                std::string("--at: expected a position from 1 to 200, not '") + place + "'");
        refused(std::string("remove ") + place,
                std::string("expected a position from 1 to 200, not '") + place + "'");
    }
    EXPECT_EQ(board.run({"access", "deny", "192.0.2.7", "--at", ""}).exit, Exit::Usage);
    refused("test 192.0.2.0/24",
            "expected an IPv4 address, four numbers from 0 to 255 with dots between such as "
            "192.0.2.1, not '192.0.2.0/24'");
    EXPECT_THAT(board.requests(), IsEmpty());
    refused("deny 192.0.2.7 --at 4", "--at 4: the list has 2 rules, so the last place is 3");
    refused("remove 3", "there is no rule 3: the list has 2 rules");
    board.run("access clear -q");
    refused("remove 1", "there is no rule 1: the list is empty");
    EXPECT_THAT(board.requests(), Not(Contains(StartsWith("add_ra_rule"))));
}

TEST(Access, TellsThatTheListIsFull) {
    CannedBoard board({"--rules", "200"});
    EXPECT_EQ(
        board.run("access permit 192.0.2.7 --at 5"),
        refusedWith("the list is full: it has 200 rules, and the board keeps no more; remove one "
                    "first"));
    EXPECT_THAT(board.requests(), Not(Contains(StartsWith("add_ra_rule"))));
    EXPECT_EQ(board.run("access remove -q 200"), done(""));
    EXPECT_EQ(board.run("access permit -q 192.0.2.7 --at 200"), done(""));
    EXPECT_THAT(board.run("access list").out, testing::HasSubstr("\n200  permit  192.0.2.7/32 "));
}

TEST(Access, Removes) {
    CannedBoard board({"--counters", "none"});
    board.run("access permit -q 192.0.2.0/24");
    board.run("access deny -q 0.0.0.0/0");
    EXPECT_EQ(board.run("access remove 1"), done("No.  Answer  Network\n"
                                                 "  1  deny    0.0.0.0/0\n"
                                                 "everything else: denied\n"));
    EXPECT_EQ(board.run("access clear"), done("no rule: everybody is admitted\n"));
    const auto requests = board.requests();
    EXPECT_THAT(requests, Contains("remove_ra_rule 1"));
    EXPECT_THAT(requests, Contains("remove_ra_rule 0"));
}

TEST(Access, TellsTheListAfterARefusal) {
    const CannedBoard refusing({"--refuse", "--rules", "1"});
    EXPECT_EQ(
        refusing.run("access deny 192.0.2.7"),
        refusedWith("the board refused to add the rule deny 192.0.2.7/32: result -1 (failed); now "
                    "in force: a list of 1 rule"));
    EXPECT_EQ(
        refusing.run("access remove 1"),
        refusedWith("the board refused to remove rule 1 (permit 192.0.2.0/24): result -1 (failed); "
                    "now in force: a list of 1 rule"));
    const CannedBoard failing({"--rules", "3", "--fail-half-way", "remove_ra_rule"});
    EXPECT_EQ(
        failing.run("access clear"),
        refusedWith("the board refused to remove all rules: result -1 (failed); now in force: a "
                    "list of 2 rules"));
}

TEST(Access, TestsAnAddress) {
    CannedBoard board;
    EXPECT_EQ(board.run("access test 192.0.2.7"),
              done("192.0.2.7: admitted, as there is no rule\n"));
    board.run("access deny -q 192.0.2.7");
    board.run("access permit -q 192.0.2.0/24");
    EXPECT_EQ(board.run("access test 192.0.2.7"),
              done("192.0.2.7: denied by rule 1 (deny 192.0.2.7/32)\n"));
    EXPECT_EQ(board.run("access test 192.0.2.8"),
              done("192.0.2.8: admitted by rule 2 (permit 192.0.2.0/24)\n"));
    EXPECT_EQ(board.run("access test 198.51.100.7"),
              done("198.51.100.7: denied, as no rule matches\n"));
    EXPECT_EQ(board.run("access test --json 192.0.2.8"), done(laidOut(R"({
              "address": "192.0.2.8", "admitted": true,
              "rule": {"position": 2, "answer": "permit", "network": "192.0.2.0/24"}})")));
    EXPECT_EQ(board.run("access test --json 198.51.100.7"), done(laidOut(R"({
              "address": "198.51.100.7", "admitted": false, "rule": null})")));
}

TEST(AccessFromAfar, NeedsConsentToBeDenied) {
    CannedBoard board;
    const Variable connection("SSH_CONNECTION", "198.51.100.7 50022 192.0.2.10 22");
    const std::string warning =
        "this can end your own connection from 198.51.100.7: with this change it is denied";
    EXPECT_EQ(board.run("access permit 192.0.2.0/24"),
              wrongUsage(warning + ", as no rule matches; give --yes to do it all the same"));
    EXPECT_EQ(board.run("access permit -q 198.51.100.0/24"), done(""));
    EXPECT_EQ(board.run("access permit -q 192.0.2.0/24"), done(""));
    EXPECT_EQ(board.run("access deny -q 198.51.100.7"), done(""));  // behind the one that admits
    EXPECT_EQ(board.run("access deny -q 198.51.100.7 --at 1"),
              wrongUsage(warning + " by rule 1 (deny 198.51.100.7/32); give --yes to do it all "
                                   "the same"));
    EXPECT_EQ(run(board.to({"access", "remove", "1", "-q"}), "\n", true),
              (Outcome{Exit::Usage,
                       warning + " by rule 2 (deny 198.51.100.7/32)\nDo it all the same? [y/N] ",
                       "mngctl: nothing was changed\n"}));
    EXPECT_EQ(board.run("access remove -q 1 --yes"), done(""));
    EXPECT_EQ(board.run("access clear -q"), done(""));
    const Variable other("SSH_CONNECTION", "198.51.100.7 50022 203.0.113.1 22");
    EXPECT_EQ(board.run("access permit -q 192.0.2.0/24"), done(""));
}

}  // namespace
}  // namespace mngctl::test
