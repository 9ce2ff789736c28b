#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string nothingSet =
    "contact: none\nlocation: none\nname: none\n"
    "communities: none, the agent answers nobody\n"
    "trap port: 162\ntrap managers: none\n";

TEST(Snmp, IsShown) {
    CannedBoard board;
    EXPECT_EQ(board.run("snmp show"), done(nothingSet));
    EXPECT_THAT(board.requests(),
                ElementsAre("snmpsystem_get", "snmpcommunity_get", "get_snmptrap"));
    board.run({"snmp", "contact", "NOC \"night\" #1"});
    board.run("snmp community add public ro");
    board.run("snmp community add private rw");
    board.run("snmp trap add 192.0.2.1 traps");
    board.run("snmp trap add 198.51.100.7 a");
    EXPECT_EQ(board.run("snmp show"), done("contact: NOC \"night\" #1\nlocation: none\nname: none\n"
                                           "communities:\n"
                                           "  public   read-only\n"
                                           "  private  read-write\n"
                                           "trap port: 162\ntrap managers:\n"
                                           "  192.0.2.1     traps\n"
                                           "  198.51.100.7  a\n"));
}

TEST(Snmp, IsShownAsJson) {
    const CannedBoard board;
    board.run("snmp name node");
    board.run("snmp community add public ro");
    board.run("snmp trap add 192.0.2.1 traps");
    EXPECT_EQ(board.run("snmp show --json"), done(laidOut(R"({"contact": "", "location": "",
              "name": "node", "communities": [{"name": "public", "access": "read-only"}],
              "traps": {"port": 162,
                "managers": [{"address": "192.0.2.1", "community": "traps"}]}})")));
}

TEST(Snmp, SystemTextsAreSetAndReadBack) {
    CannedBoard board;
    EXPECT_EQ(board.run({"snmp", "location", "Rack 7 \\ \"a\""}),
              done("contact: none\nlocation: Rack 7 \\ \"a\"\nname: none\n"));
    EXPECT_EQ(board.run({"snmp", "location", "", "-q"}), done(""));
    EXPECT_THAT(
        board.requests(),
        ElementsAre(R"(snmpsystem_change {"text":"Rack 7 \\ \"a\"","selector":"location"})",
                    "snmpsystem_get", R"(snmpsystem_change {"text":"","selector":"location"})"));
    EXPECT_EQ(board.run({"snmp", "name", std::string(31, 'n'), "-q"}), done(""));
}

TEST(Snmp, TextsThatTheBoardCannotKeepAreNotSent) {
    CannedBoard board;
    EXPECT_EQ(board.run({"snmp", "name", std::string(32, 'n')}),
              wrongUsage("the name has at most 31 bytes, this one has 32"));
    EXPECT_EQ(board.run({"snmp", "contact", "a\nrwcommunity x"}),
              wrongUsage("the contact has a control character"));
    EXPECT_EQ(board.run("snmp contact").exit, Exit::Usage);
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Snmp, ARefusedTextIsExplained) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(
        board.run("snmp name node"),
        refusedWith("the board refused to set the name: result -1 (failed); the name is '' still"));
}

TEST(SnmpCommunity, IsAddedChangedAndRemoved) {
    const CannedBoard board;
    EXPECT_EQ(board.run({"snmp", "community", "add", "a#\"\\", "rw"}),
              done("communities:\n  a#\"\\  read-write\n"));
    EXPECT_EQ(board.run({"snmp", "community", "access", "a#\"\\", "read-only"}),
              done("communities:\n  a#\"\\  read-only\n"));
    EXPECT_EQ(
        board.run("snmp community list --json"),
        done("[\n  {\n    \"name\": \"a#\\\"\\\\\",\n    \"access\": \"read-only\"\n  }\n]\n"));
    EXPECT_EQ(board.run({"snmp", "community", "remove", "a#\"\\"}),
              done("communities: none, the agent answers nobody\n"));
}

TEST(SnmpCommunity, RefusalsAreExplained) {
    const CannedBoard board;
    const std::string adding = "the board refused to add the community: result -1 (failed); ";
    for (const std::string name : {"a", "b", "c", "d", "e", "f"}) {
        EXPECT_EQ(board.run("snmp community add " + name + " ro -q"), done(""));
    }
    EXPECT_EQ(board.run("snmp community add g ro"),
              refusedWith(adding + "the board keeps 6 communities, which it has"));
    EXPECT_EQ(board.run("snmp community add a rw"),
              refusedWith(adding + "there is a community of that name; 'mngctl snmp "
                                   "community access' changes it"));
    EXPECT_EQ(board.run("snmp community remove g"),
              refusedWith("the board refused to remove the community: result -1 "
                          "(failed); there is no community of that name now"));
    EXPECT_EQ(board.run("snmp community access g ro").exit, Exit::Refused);
}

TEST(SnmpCommunity, NothingIsSentThatIsNone) {
    CannedBoard board;
    EXPECT_EQ(board.run({"snmp", "community", "add", std::string(30, 'c'), "ro"}),
              wrongUsage("a community here has at most 29 characters, this one has 30"));
    EXPECT_EQ(board.run({"snmp", "community", "add", "two words", "ro"}),
              wrongUsage("a community is made of visible ASCII characters, without blanks"));
    EXPECT_EQ(board.run({"snmp", "community", "add", "", "ro"}),
              wrongUsage("the community is empty"));
    EXPECT_EQ(board.run("snmp community add public write"),
              wrongUsage("expected ro or rw, not 'write'"));
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(SnmpTrap, IsAddedMovedAndRemoved) {
    const CannedBoard board;
    EXPECT_EQ(board.run("snmp trap add 192.0.2.1 traps"),
              done("trap port: 162\ntrap managers:\n  192.0.2.1  traps\n"));
    EXPECT_EQ(board.run("snmp trap move 192.0.2.1 traps 192.0.2.2"),
              done("trap port: 162\ntrap managers:\n  192.0.2.2  traps\n"));
    EXPECT_EQ(board.run("snmp trap port 1162 -q"), done(""));
    EXPECT_EQ(board.run("snmp trap remove 192.0.2.2 traps"),
              done("trap port: 1162\ntrap managers: none\n"));
    EXPECT_EQ(board.run("snmp trap list --json"),
              done(laidOut(R"({"port": 1162, "managers": []})")));
}

TEST(SnmpTrap, RefusalsAreExplained) {
    const CannedBoard board;
    for (unsigned host = 1; host <= 10; ++host) {
        EXPECT_EQ(board.run("snmp trap add 192.0.2." + std::to_string(host) + " traps -q"),
                  done(""));
    }
    const std::string adding = "the board refused to add the manager: result -1 (failed); ";
    EXPECT_EQ(board.run("snmp trap add 192.0.2.11 traps"),
              refusedWith(adding + "the board keeps 10 managers, which it has"));
    EXPECT_EQ(board.run("snmp trap add 192.0.2.1 traps"),
              refusedWith(adding + "there is a manager of that address with that "
                                   "community"));
    EXPECT_EQ(board.run("snmp trap remove 192.0.2.1 other"),
              refusedWith("the board refused to remove the manager: result -1 (failed); "
                          "there is no manager of that address with that community now"));
}

TEST(SnmpTrap, NothingIsSentThatIsNoManager) {
    CannedBoard board;
    for (const std::string wrong : {"0.0.0.0", "255.255.255.255", "224.0.0.1", "host", "1.2.3"}) {
        EXPECT_EQ(board.run("snmp trap add " + wrong + " traps").exit, Exit::Usage) << wrong;
    }
    EXPECT_EQ(board.run({"snmp", "trap", "add", "192.0.2.1", std::string(32, 'c')}),
              wrongUsage("a community here has at most 31 characters, this one has 32"));
    for (const std::string wrong : {"0", "65536", "-", "port"}) {
        EXPECT_EQ(board.run("snmp trap port " + wrong),
                  wrongUsage("expected a port from 1 to 65535, not '" + wrong + "'"));
    }
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(SnmpTrap, TestNeedsAManager) {
    EXPECT_EQ(CannedBoard().run("snmp trap test"),
              refusedWith("there is no trap manager; 'mngctl snmp trap add' adds one"));
}

TEST(SnmpTrap, TestNeedsItsProgram) {
    const CannedBoard board;
    board.run("snmp trap add 192.0.2.1 traps");
    const TemporaryDirectory empty;
    const Variable path("PATH", empty.path());
    EXPECT_EQ(board.run("snmp trap test"),
              noAnswer("no trap can be sent: snmptrap: No such file or directory"));
}

}  // namespace
}  // namespace mngctl::test
