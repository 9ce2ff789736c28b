#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string shown(const std::string& client, const std::string& vendor,
                  const std::string& option82) {
    return "DHCP client: " + client + "\nvendor class: " + vendor + "\noption 82: " + option82 +
           "\n";
}

TEST(Dhcp, IsShown) {
    const CannedBoard board;
    EXPECT_EQ(board.run("dhcp show"), done(shown("off", "off", "off")));
    EXPECT_EQ(board.run("dhcp show --json", Protocol::Udp), done(laidOut(R"({"enabled": false,
              "vendorClass": false, "option82": false})")));
}

TEST(Dhcp, IsSwitched) {
    CannedBoard board;
    EXPECT_EQ(board.run("dhcp on"), done(shown("on", "off", "off")));
    EXPECT_EQ(board.run("dhcp off"), done(shown("off", "off", "off")));
    EXPECT_EQ(board.run("dhcp on -q"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre("set_protocol 1", "get_network_info", "set_protocol 0",
                            "get_network_info", "set_protocol 1"));
}

TEST(Dhcp, SwitchesItsOptionsAndLeavesTheClientAsItIs) {
    CannedBoard board;
    EXPECT_EQ(board.run("dhcp vendor-class on"), done(shown("off", "on", "off")));
    EXPECT_EQ(board.run("dhcp option82 on"), done(shown("off", "on", "on")));
    EXPECT_EQ(board.run("dhcp vendor-class off"), done(shown("off", "off", "on")));
    EXPECT_EQ(board.run("dhcp option82 off -q"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_vendor {"dhcp":false,"vendor":true})", "get_network_info",
                            R"(set_option82 {"dhcp":false,"option82":true})", "get_network_info",
                            R"(set_vendor {"dhcp":false,"vendor":false})", "get_network_info",
                            R"(set_option82 {"dhcp":false,"option82":false})"));
}

TEST(Dhcp, SendsNothingThatIsWrong) {
    CannedBoard board;
    EXPECT_EQ(board.run("dhcp vendor-class maybe"), wrongUsage("expected on or off, not 'maybe'"));
    EXPECT_EQ(board.run("dhcp option82").exit, Exit::Usage);
    EXPECT_EQ(board.run("dhcp on now").exit, Exit::Usage);
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Dhcp, TellsWhatIsInForceAfterARefusal) {
    const CannedBoard board({"--refuse"});
    const std::string state =
        ": result -1 (failed); now in force: DHCP off, vendor class off, option 82 off";
    EXPECT_EQ(board.run("dhcp on"), refusedWith("the board refused to switch DHCP on" + state));
    EXPECT_EQ(board.run("dhcp vendor-class on"),
              refusedWith("the board refused to switch the vendor class on" + state));
    EXPECT_EQ(board.run("dhcp option82 off"),
              refusedWith("the board refused to switch option 82 off" + state));
}

TEST(DhcpCircuitId, IsShownWithTheVendorClass) {
    CannedBoard board;
    EXPECT_EQ(board.run("dhcp circuit-id"),
              done("vendor class: VANTORIX (not sent)\n"
                   "circuit id: VANTORIX:1 eth 1:1:\\x1b (not sent)\n"));
    board.run("dhcp option82 on -q");
    EXPECT_EQ(board.run("dhcp circuit-id --json", Protocol::Udp), done(laidOut(R"({
              "vendorClass": {"text": "VANTORIX", "sent": false},
              "circuitId": {"text": "VANTORIX:1 eth 1:1:\u001b", "sent": true}})")));
    EXPECT_THAT(board.requests(),
                ElementsAre("dhcp", R"(set_option82 {"dhcp":false,"option82":true})", "dhcp"));
    EXPECT_EQ(CannedBoard({"--refuse"}).run("dhcp circuit-id"),
              refusedWith("the board refused to tell what its DHCP client sends: no client"));
}

TEST(DhcpFromAfar, NeedsConsentToSwitchTheClient) {
    CannedBoard board;
    const Variable connection("SSH_CONNECTION", "198.51.100.7 50022 192.0.2.10 22");
    const std::string warning =
        "this can end your own connection from 198.51.100.7: it came in over 192.0.2.10, which the "
        "board can lose when DHCP is switched on";
    EXPECT_EQ(board.run("dhcp on"), wrongUsage(warning + "; give --yes to do it all the same"));
    EXPECT_THAT(board.requests(), ElementsAre("get_network_info"));
    EXPECT_EQ(board.run("dhcp off -q"), done(""));  // as it is
    EXPECT_EQ(board.run("dhcp vendor-class on -q"), done(""));
    EXPECT_EQ(run(board.to({"dhcp", "on", "-q"}), "yes\n", true),
              done(warning + "\nDo it all the same? [y/N] "));
    EXPECT_EQ(board.run("dhcp off").exit, Exit::Usage);
    EXPECT_EQ(board.run("dhcp off --yes -q"), done(""));
    const Variable other("SSH_CONNECTION", "198.51.100.7 50022 203.0.113.1 22");
    EXPECT_EQ(board.run("dhcp on -q"), done(""));
}

}  // namespace
}  // namespace mngctl::test
