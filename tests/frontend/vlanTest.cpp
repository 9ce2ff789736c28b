#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string database =
    "VLAN 1: ports 1 (PVID), 100\n"
    "VLAN 10: no ports\n"
    "VLAN 20: ports 100 (PVID)\n";

TEST(Vlan, IsShownWithTheDefaultVlanAndTheDatabase) {
    CannedBoard board;
    EXPECT_EQ(board.run("vlan show"), done("management VLAN: 1\n"
                                           "default VLAN: 1 (native)\n"
                                           "stored for profile mode: none\n" +
                                           database));
    EXPECT_THAT(board.requests(), ElementsAre("get_network_info", "vlans"));
    EXPECT_EQ(board.run("vlan show", Protocol::Udp).exit, Exit::Done);
}

TEST(Vlan, IsShownAsJson) {
    const CannedBoard board({"--vlans", "stored"});
    EXPECT_EQ(board.run("vlan show --json"), done(laidOut(R"({"managementVlan": 1,
              "defaultVlan": {"id": 1, "mode": "native"}, "storedManagementVlan": 10,
              "database": [{"id": 1, "ports": [1, 100], "pvidPorts": [1]},
                {"id": 10, "ports": [], "pvidPorts": []},
                {"id": 20, "ports": [100], "pvidPorts": [100]}]})")));
}

TEST(Vlan, ThatIsNoneIsShownAsNone) {
    const CannedBoard board;
    board.run("rpc set_vlan 0");
    board.run("rpc set_def_vlan_mode 0 7");
    EXPECT_EQ(board.run("vlan show"), done("management VLAN: none\n"
                                           "default VLAN: none (7)\n"
                                           "stored for profile mode: none\n" +
                                           database));
    EXPECT_EQ(board.run("vlan default show --json"),
              done(laidOut(R"({"defaultVlan": {"id": null, "mode": 7}})")));
}

TEST(Vlan, CannotBeShownByABoardThatDoesNotTellItsDatabase) {
    EXPECT_EQ(CannedBoard({"--vlans", "failed"}).run("vlan show"),
              refusedWith("the board refused to tell its VLANs: no \\x1b[31mswitch"));
    EXPECT_EQ(CannedBoard({"--vlans", "none"}).run("vlan show"),
              refusedWith("the board does not know this procedure: it runs an older version"));
}

TEST(Vlan, IsSetAndReadBack) {
    CannedBoard board;
    EXPECT_EQ(board.run("vlan set 10"), done("management VLAN: 10\n"));
    EXPECT_EQ(board.run("vlan set 0x14 --json"), done(laidOut(R"({"managementVlan": 20})")));
    EXPECT_EQ(board.run("vlan set 4094 -q"), done(""));
    EXPECT_THAT(board.requests(), ElementsAre("set_vlan 10", "get_network_info", "set_vlan 20",
                                              "get_network_info", "set_vlan 4094"));
}

TEST(Vlan, DefaultIsSetAndReadBack) {
    CannedBoard board;
    EXPECT_EQ(board.run("vlan default set 10 tagged"), done("default VLAN: 10 (tagged)\n"));
    EXPECT_EQ(board.run("vlan default show"), done("default VLAN: 10 (tagged)\n"));
    EXPECT_EQ(board.run("vlan default set 1 native -q"), done(""));
    EXPECT_THAT(board.requests(), ElementsAre(R"(set_def_vlan_mode {"vlanId":10,"mode":"tagged"})",
                                              "get_network_info", "get_network_info",
                                              R"(set_def_vlan_mode {"vlanId":1,"mode":"native"})"));
}

TEST(Vlan, NothingIsSentThatIsNoVlan) {
    CannedBoard board;
    for (const std::string wrong : {"0", "4095", "65537", "4294967297", "1.5", "ten", "-", ""}) {
        const Outcome refused =
            wrongUsage("expected a VLAN id from 1 to 4094, not '" + wrong + "'");
        EXPECT_EQ(board.run({"vlan", "set", wrong}), refused);
        EXPECT_EQ(board.run({"vlan", "default", "set", wrong, "native"}), refused);
    }
    EXPECT_EQ(board.run("vlan set -- -1"),
              wrongUsage("expected a VLAN id from 1 to 4094, not '-1'"));
    EXPECT_EQ(board.run("vlan default set 10 untagged"),
              wrongUsage("expected tagged or native, not 'untagged'"));
    EXPECT_EQ(board.run("vlan default set 10").err,
              "mngctl: MODE is required\nTry 'mngctl vlan default set --help'.\n");
    EXPECT_EQ(board.run("vlan default"),
              wrongUsage("'mngctl vlan default' lacks what to do; expected show or set\n"
                         "Try 'mngctl vlan default --help'."));
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Vlan, ARefusedMoveIsExplained) {
    const CannedBoard board({"--refuse"});
    const std::string refusal = "the board refused to set the management VLAN: result -1 (failed)";
    EXPECT_EQ(board.run("vlan set 7"),
              refusedWith(refusal + "; VLAN 7 is not in the VLAN database, and the board "
                                    "creates none while feature 12 is off; the management VLAN "
                                    "is now 1"));
    EXPECT_EQ(board.run("vlan set 10"),
              refusedWith(refusal + "; the board's log tells the cause; the management VLAN is "
                                    "now 1"));
    board.run("board profile on");
    EXPECT_EQ(board.run("vlan set 20"),
              refusedWith(refusal +
                          "; in profile mode, a VLAN that is native on the uplink carries no "
                          "management traffic unless it is the default VLAN; the board's log tells "
                          "the cause; the management VLAN is now 1"));
}

TEST(Vlan, ARefusedMoveThatLeftThePortOutsideIsTold) {
    const CannedBoard board({"--refuse", "--vlans", "outside"});
    EXPECT_EQ(
        board.run("vlan set 10"),
        refusedWith("the board refused to set the management VLAN: result -1 (failed); the "
                    "board's log tells the cause; the management port is in no management VLAN "
                    "now"));
}

TEST(Vlan, ARefusalOfWhichNothingCanBeReadIsToldAsItIs) {
    const CannedBoard board({"--refuse", "--vlans", "none"});
    EXPECT_EQ(board.run("vlan set 10"),
              refusedWith("the board refused to set the management VLAN: result -1 (failed); the "
                          "management VLAN is now 1"));
}

TEST(Vlan, ARefusedDefaultIsExplained) {
    const CannedBoard board({"--refuse"});
    const std::string refusal = "the board refused to set the default VLAN: result -1 (failed)";
    const std::string state = "; the default VLAN is now 1 (native)";
    EXPECT_EQ(board.run("vlan default set 10 native"),
              refusedWith(refusal +
                          "; the default VLAN can be changed in profile mode only, "
                          "which 'mngctl board profile on' switches on" +
                          state));
    board.run("board profile on");
    EXPECT_EQ(board.run("vlan default set 7 native"),
              refusedWith(refusal + "; VLAN 7 is not in the VLAN database" + state));
    EXPECT_EQ(board.run("vlan default set 10 native"),
              refusedWith(refusal +
                          "; the VLANs of the uplink may be in conflict; the board's "
                          "log tells the cause" +
                          state));
}

}  // namespace
}  // namespace mngctl::test
