#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string off = "ONT management: off, or it cannot be read\n";

TEST(Ont, IsShown) {
    CannedBoard board;
    EXPECT_EQ(board.run("ont show"), done(off));
    EXPECT_EQ(board.run("ont show --json", Protocol::Udp), done(laidOut(R"({"address": null,
              "prefixLength": null, "netmask": null, "vlan": null})")));
    EXPECT_THAT(board.requests(), ElementsAre("get_ont_nmg", "get_ont_nmg"));
}

TEST(Ont, IsSetWithAPrefixOrAMask) {
    const CannedBoard board;
    EXPECT_EQ(board.run("ont set 198.51.100.1/24 20"),
              done("ONT management: 198.51.100.1/24 in VLAN 20\n"));
    EXPECT_EQ(board.run("ont set 198.51.100.2 255.255.255.128 4094"),
              done("ONT management: 198.51.100.2/25 in VLAN 4094\n"));
    EXPECT_EQ(board.run("ont show --json"), done(laidOut(R"({"address": "198.51.100.2",
              "prefixLength": 25, "netmask": "255.255.255.128", "vlan": 4094})")));
    EXPECT_EQ(board.run("ont off"), done(off));
    EXPECT_EQ(board.run("ont set -q 198.51.100.1/24 20"), done(""));
}

TEST(Ont, SendsNothingThatIsWrong) {
    CannedBoard board;
    EXPECT_EQ(board.run("ont set 198.51.100.1/24 0"),
              wrongUsage("expected a VLAN id from 1 to 4094, not '0'"));
    EXPECT_EQ(board.run("ont set 198.51.100.1/24 4095"),
              wrongUsage("expected a VLAN id from 1 to 4094, not '4095'"));
    for (const char* wrong :
         {"198.51.100.1 20", "198.51.100.0/24 20", "198.51.100.1 255.0.255.0 20", "0.0.0.0/24 20",
          "198.51.100.1/24", "198.51.100.1/24 255.255.255.0 20"}) {
        EXPECT_EQ(board.run(std::string("ont set ") + wrong).exit, Exit::Usage) << wrong;
    }
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Ont, TellsWhyTheVlanIsRefused) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(
        board.run("ont set 198.51.100.1/24 1"),
        refusedWith("the board refused to set the ONT management address 198.51.100.1/24: result "
                    "-1 (failed); now in force: VLAN 1 is that of the management port; ONT "
                    "management is off, or it cannot be read"));
    EXPECT_THAT(board.run("ont off").err, HasSubstr("refused to switch ONT management off"));
}

}  // namespace
}  // namespace mngctl::test
