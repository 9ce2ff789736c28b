#include "mngctlRun.h"
#include "terminal.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string shown(const std::string& address, const std::string& mask, const std::string& gateway) {
    return "address: " + address + "\nmask: " + mask +
           "\nsource: static\nMAC: 02:00:5e:10:00:0a\ngateway: " + gateway +
           "\nmanagement VLAN: 1\n";
}

const std::string ipv6 =
    "IPv6 address: 2001:db8::100/128\nIPv6 address: fe80::5eff:fe10:a/64\nIPv6 gateway: none\n"
    "IPv6 DHCP client: on\n";

TEST(Ip, ShowsTheAddressAndWhatGoesWithIt) {
    CannedBoard board;
    EXPECT_EQ(board.run("ip show"),
              done(shown("192.0.2.10/24", "255.255.255.0", "192.0.2.254") + ipv6));
    EXPECT_EQ(board.run("ip show --json", Protocol::Udp), done(laidOut(R"({
              "address": "192.0.2.10", "prefixLength": 24, "netmask": "255.255.255.0",
              "source": "static", "macAddress": "02:00:5e:10:00:0a", "gateway": "192.0.2.254",
              "managementVlan": 1,
              "ipv6": {"addresses": ["2001:db8::100/128", "fe80::5eff:fe10:a/64"],
                "gateway": null, "dhcp": true}})")));
    EXPECT_THAT(board.requests(),
                ElementsAre("get_network_info", "get_gateway", "get_ipv6addr", "get_ipv6proto",
                            "get_network_info", "get_gateway", "get_ipv6addr", "get_ipv6proto"));
}

TEST(Ip, TellsThatTheAddressIsFromDhcp) {
    CannedBoard board;
    board.run("dhcp on");
    EXPECT_THAT(board.run("ip show").out, testing::HasSubstr("\nsource: dhcp\n"));
    EXPECT_THAT(board.run("ip show --json").out, testing::HasSubstr(R"("source": "dhcp")"));
}

TEST(IpSet, SetsAndShowsWhatTheBoardNowSays) {
    CannedBoard board;
    EXPECT_EQ(board.run("ip set 192.0.2.11/25"),
              (Outcome{Exit::Done, shown("192.0.2.11/25", "255.255.255.128", "none"),
                       "mngctl: the gateway 192.0.2.254 is gone: it is not in 192.0.2.0/25; "
                       "'mngctl gateway set' sets another\n"}));
    EXPECT_EQ(board.run("ip set 192.0.2.12 255.255.255.0"),
              done(shown("192.0.2.12/24", "255.255.255.0", "none")));
    EXPECT_EQ(board.run("ip set -q 192.0.2.13/24"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre("get_network_info", "get_gateway",
                            R"(set_ip {"ipAddress":"192.0.2.11","netmask":"255.255.255.128"})",
                            "get_network_info", "get_gateway", "get_network_info", "get_gateway",
                            R"(set_ip {"ipAddress":"192.0.2.12","netmask":"255.255.255.0"})",
                            "get_network_info", "get_gateway", "get_network_info", "get_gateway",
                            R"(set_ip {"ipAddress":"192.0.2.13","netmask":"255.255.255.0"})"));
}

TEST(IpSet, SendsNothingThatIsWrong) {
    CannedBoard board;
    for (const char* const wrong :
         {"192.0.2.10", "192.0.2.10/33", "192.0.2.10/0", "192.0.2.10/24 255.255.255.0",
          "192.0.2.10 255.0.255.0", "0.0.0.0/24", "224.0.0.1/24", "127.0.0.1/8", "192.0.2.0/24",
          "192.0.2.255/24", "192.0.2.300/24", "2001:db8::1", "2001:db8::1/0", "2001:db8::1 129", "",
          "a b c"}) {
        const Outcome outcome = board.run("ip set " + std::string(wrong));
        EXPECT_EQ(outcome.exit, Exit::Usage) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_THAT(outcome.err, testing::StartsWith("mngctl: ")) << wrong;
    }
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(IpSet, TellsWhatIsInForceAfterARefusal) {
    const CannedBoard refusing({"--refuse"});
    EXPECT_EQ(
        refusing.run("ip set 192.0.2.11/24"),
        refusedWith("the board refused to set the address 192.0.2.11/24: result -1 (failed); now "
                    "in force: the address 192.0.2.10/24, DHCP off, the gateway 192.0.2.254"));
    const CannedBoard failing({"--fail-half-way", "set_ip"});
    EXPECT_EQ(
        failing.run("ip set 192.0.2.11/24"),
        refusedWith("the board refused to set the address 192.0.2.11/24: result -1 (failed); now "
                    "in force: no address, DHCP off, no gateway: 'mngctl ip set' with an address "
                    "that the board takes, or 'mngctl dhcp on', gives it one again"));
    EXPECT_EQ(failing.run("ip show"), done(shown("none", "none", "none") + ipv6));
    EXPECT_EQ(failing.run("ip show --json").exit, Exit::Done);
    const CannedBoard dying({"--fail-half-way", "set_ip", "--die-after", "set_ip"});
    EXPECT_THAT(dying.run("ip set 192.0.2.11/24").err,
                testing::HasSubstr("; what is in force now could not be read: "));
}

class IpFromAfar : public testing::Test {
protected:
    Variable connection{"SSH_CONNECTION", "198.51.100.7 50022 192.0.2.10 22"};
    CannedBoard board;
};

TEST_F(IpFromAfar, NeedsConsentToChangeTheAddressOfTheWayIn) {
    const std::string warning =
        "this can end your own connection from 198.51.100.7: it came in over 192.0.2.10/24, which "
        "192.0.2.11/24 takes the place of";
    const std::vector<std::string> command{"ip", "set", "-q", "192.0.2.11/24"};
    EXPECT_EQ(board.run(command), wrongUsage(warning + "; give --yes to do it all the same"));
    const std::string question = warning + "\nDo it all the same? [y/N] ";
    EXPECT_EQ(run(board.to(command), "n\n", true),
              (Outcome{Exit::Usage, question, "mngctl: nothing was changed\n"}));
    EXPECT_THAT(board.requests(),
                ElementsAre("get_network_info", "get_gateway", "get_network_info", "get_gateway"));
    EXPECT_EQ(run(board.to(command), "y\n", true), done(question));
    EXPECT_EQ(board.run("ip set -q --yes 192.0.2.10/24"), done(""));
    EXPECT_EQ(board.requests().size(), 6U);
}

TEST_F(IpFromAfar, NeedsConsentForAMaskThatLeavesNoWayBack) {
    // The gateway is the last but one of the network's addresses.
    EXPECT_EQ(
        board.run("ip set 192.0.2.10/25"),
        wrongUsage("this can end your own connection from 198.51.100.7: no way leads back there "
                   "from 192.0.2.10/25 with the gateway 192.0.2.254; give --yes to do it all the "
                   "same"));
    EXPECT_EQ(board.run("ip set -q 192.0.2.10/23"), done(""));
    EXPECT_EQ(board.run("ip set -q 192.0.2.10/24"), done(""));
}

TEST_F(IpFromAfar, IsNotAskedWhoCameInOverAnotherAddress) {
    const Variable other("SSH_CONNECTION", "198.51.100.7 50022 203.0.113.1 22");
    EXPECT_EQ(board.run("ip set -q 192.0.2.11/24"), done(""));
}

TEST_F(IpFromAfar, IsAskedAtThePrompt) {
    const TemporaryDirectory home;
    Terminal terminal(
        board.to({}),
        {{"TERM", "xterm"}, {"HOME", home.path()}, {"XDG_STATE_HOME", home / "state"}});
    terminal.waitFor("mngctl> ");
    terminal.type("ip set 192.0.2.11/24\r", "Do it all the same? [y/N] ");
    terminal.enter("n", "mngctl: nothing was changed");
    terminal.type("ip set 192.0.2.11/24\r", "Do it all the same? [y/N] ");
    terminal.enter("y", "address: 192.0.2.11/24");
    EXPECT_EQ(terminal.leave(), 0);
}

}  // namespace
}  // namespace mngctl::test
