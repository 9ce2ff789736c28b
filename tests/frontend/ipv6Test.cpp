#include "mngctl/commands/consent.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string lease = "address: 2001:db8::100/128\n";
const std::string linkLocal = "address: fe80::5eff:fe10:a/64\n";

std::string shown(const std::string& addresses, const std::string& gateway,
                  const std::string& dhcp = "on") {
    return addresses + "gateway: " + gateway + "\nDHCP client: " + dhcp + "\n";
}

TEST(Ipv6Command, ShowsAllAddresses) {
    CannedBoard board;
    EXPECT_EQ(board.run("ipv6 show"), done(shown(lease + linkLocal, "none")));
    EXPECT_EQ(board.run("ipv6 show --json", Protocol::Udp), done(laidOut(R"({
              "addresses": ["2001:db8::100/128", "fe80::5eff:fe10:a/64"], "gateway": null,
              "dhcp": true})")));
    EXPECT_THAT(board.requests(),
                ElementsAre("get_ipv6addr", "get_ipv6proto", "get_ipv6addr", "get_ipv6proto"));
}

TEST(Ipv6Command, SetsAndRemovesTheAddress) {
    CannedBoard board;
    const std::string shownThen = shown("address: 2001:db8::7/64\n" + lease + linkLocal, "none");
    EXPECT_EQ(board.run("ipv6 set 2001:DB8::7/64"), done(shownThen));
    EXPECT_EQ(board.run("ipv6 set 2001:db8::7 64"), done(shownThen));
    EXPECT_EQ(board.run("ip set 2001:db8::7/64"), done(shownThen));
    EXPECT_EQ(board.run("ipv6 clear"), done(shown(lease + linkLocal, "none")));
    EXPECT_EQ(board.run("ipv6 set -q 2001:db8::/127"), done(""));
    const std::string request = R"(set_ipv6addr {"address":"2001:db8::7","prefixLength":64})";
    EXPECT_THAT(board.requests(),
                ElementsAre(request, "get_ipv6addr", "get_ipv6proto", request, "get_ipv6addr",
                            "get_ipv6proto", request, "get_ipv6addr", "get_ipv6proto",
                            "remove_ipv6addr", "get_ipv6addr", "get_ipv6proto",
                            R"(set_ipv6addr {"address":"2001:db8::","prefixLength":127})"));
}

TEST(Ipv6Command, SetsAndRemovesTheGateway) {
    CannedBoard board;
    EXPECT_EQ(board.run("ipv6 gateway set FE80:0::1"), done(shown(lease + linkLocal, "fe80::1")));
    EXPECT_EQ(board.run("ipv6 gateway show"), done("gateway: fe80::1\n"));
    EXPECT_EQ(board.run("gateway show"), done("gateway: 192.0.2.254\nIPv6 gateway: fe80::1\n"));
    EXPECT_EQ(board.run("gateway clear --ipv6"), done(shown(lease + linkLocal, "none")));
    EXPECT_EQ(board.run("ipv6 gateway show --json"), done(laidOut(R"({"gateway": null})")));
    EXPECT_EQ(board.run("gateway set 2001:db8::1 -q"), done(""));
    EXPECT_EQ(board.run("gateway clear --ipv4 --ipv6 -q"), done(""));
    EXPECT_EQ(board.run("gateway show"), done("gateway: none\nIPv6 gateway: none\n"));
}

TEST(Ipv6Command, SwitchesTheClient) {
    CannedBoard board;
    EXPECT_EQ(board.run("ipv6 dhcp off"), done(shown(linkLocal, "none", "off")));
    EXPECT_EQ(board.run("ipv6 dhcp show"), done("DHCP client: off\n"));
    EXPECT_EQ(board.run("ipv6 dhcp show --json"), done(laidOut(R"({"dhcp": false})")));
    EXPECT_EQ(board.run("ipv6 dhcp on -q"), done(""));
    EXPECT_EQ(board.run("ipv6 dhcp show"), done("DHCP client: on\n"));
}

TEST(Ipv6Command, SendsNothingThatIsWrong) {
    CannedBoard board;
    const auto refused = [&](const std::string& line, const std::string& sentence) {
        EXPECT_EQ(board.run(line), wrongUsage(sentence)) << line;
    };
    const std::string host = ": expected the address of a host such as 2001:db8::10";
    refused("ipv6 set 2001:db8::7",
            "'2001:db8::7' lacks its prefix length: expected one such as 2001:db8::7/64");
    refused("ipv6 set 2001:db8::7/64 64",
            "'2001:db8::7/64' has a prefix length already; '64' is one too many");
    for (const char* const length : {"0", "129", "-1", "x", "064x", "4294967297"}) {
        refused("ipv6 set 2001:db8::7/" + std::string(length),
                "expected a prefix length from 1 to 128, not '" + std::string(length) + "'");
    }
    refused("ipv6 set 2001:db8::/64",
            "'2001:db8::/64' stands for all routers of its network: "
            "expected the address of a host in it");
    refused("ipv6 set ::/64", "'::' is the unspecified address" + host);
    refused("ipv6 set ::1/128", "'::1' is the loopback address" + host);
    refused("ipv6 set ff02::1/64", "'ff02::1' is a multicast address" + host);
    refused("ipv6 set ::ffff:192.0.2.1/64",
            "'::ffff:192.0.2.1' is an address that stands for an IPv4 address" + host);
    refused("ipv6 set 192.0.2.7/24",
            "expected an IPv6 address such as 2001:db8::1, not '192.0.2.7'");
    refused("ipv6 gateway set ff02::2", "'ff02::2' is a multicast address" + host);
    refused("gateway set ::", "'::' is the unspecified address" + host);
    refused("ipv6 gateway set fe80::1%mng0",
            "'fe80::1%mng0' names a zone, which the board cannot store: leave out the % and what "
            "follows it");
    refused("ipv6 gateway set 2001:db8::1/64",
            "expected an IPv6 address such as 2001:db8::1, not '2001:db8::1/64'");
    EXPECT_EQ(board.run({"ipv6", "set", std::string(4000, 'a') + "/64"}).exit, Exit::Usage);
    EXPECT_EQ(board.run("ipv6").exit, Exit::Usage);
    EXPECT_EQ(board.run("ipv6 dhcp maybe").exit, Exit::Usage);
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Ipv6Command, TellsWhatIsInForceAfterARefusal) {
    const CannedBoard board({"--refuse"});
    const std::string state =
        ": result -1 (failed); now in force: 2001:db8::100/128, fe80::5eff:fe10:a/64, no gateway, "
        "DHCPv6 on";
    const auto refused = [&](const std::string& line, const std::string& what) {
        EXPECT_EQ(board.run(line), refusedWith("the board refused to " + what + state));
    };
    refused("ipv6 set 2001:db8::7/64", "set the address 2001:db8::7/64");
    refused("ipv6 clear", "remove the IPv6 address that was set by hand");
    refused("ipv6 gateway set fe80::1", "set the gateway fe80::1");
    refused("ipv6 gateway clear", "remove the IPv6 gateway that was set by hand");
    EXPECT_EQ(board.run("ipv6 dhcp off"),
              refusedWith("the board did not switch DHCPv6 off; its log tells the cause"));
}

TEST(Ipv6WayIn, IsRead) {
    const auto way = parseWayIn6("2001:DB8:5::7 50022 2001:db8::100 22");
    ASSERT_TRUE(way);
    EXPECT_EQ(way->client, "2001:db8:5::7");
    EXPECT_EQ(way->server, "2001:db8::100");
    EXPECT_EQ(parseWayIn6("fe80::7%mng0 1 fe80::1%mng0 22")->client, "fe80::7");
    for (const char* const other : {"", "192.0.2.7 1 192.0.2.10 22", "2001:db8::1 1",
                                    "::ffff:192.0.2.7 1 ::ffff:192.0.2.10 22"}) {
        EXPECT_FALSE(parseWayIn6(other)) << other;
    }
}

TEST(Ipv6FromAfar, NeedsConsentToLoseTheAddressOfTheWayIn) {
    CannedBoard board;
    const Variable connection("SSH_CONNECTION", "2001:db8:5::7 50022 2001:db8::100 22");
    const std::string warning =
        "this can end your own connection from 2001:db8:5::7: it came in over 2001:db8::100/128, "
        "which ";
    const std::string hint = "; give --yes to do it all the same";
    EXPECT_EQ(board.run("ipv6 dhcp off"),
              wrongUsage(warning + "the board loses when DHCPv6 is switched off" + hint));
    EXPECT_EQ(board.run("ipv6 set 2001:db8::8/64"),
              wrongUsage(warning + "2001:db8::8/64 can take the place of" + hint));
    EXPECT_EQ(board.run("ipv6 clear"),
              wrongUsage(warning + "can be the one that is to be removed" + hint));
    EXPECT_EQ(board.run("ipv6 dhcp on -q"), done(""));
    EXPECT_EQ(run(board.to({"ipv6", "dhcp", "off", "-q"}), "y\n", true),
              done(warning + "the board loses when DHCPv6 is switched off\nDo it all the same? "
                             "[y/N] "));
    // What is gone cannot be lost.
    EXPECT_EQ(board.run("ipv6 dhcp off -q"), done(""));
    EXPECT_EQ(board.run("ipv6 set -q 2001:db8::8/64"), done(""));
}

TEST(Ipv6FromAfar, NeedsConsentToLoseTheWayBack) {
    CannedBoard board;
    board.run("ipv6 gateway set fe80::1");
    {
        const Variable neighbour("SSH_CONNECTION", "fe80::77%mng0 50022 fe80::5eff:fe10:a%mng0 22");
        EXPECT_EQ(board.run("ipv6 gateway set -q fe80::2"), done(""));
    }
    const Variable connection("SSH_CONNECTION", "2001:db8:5::7 50022 2001:db8::100 22");
    const std::string warning =
        "this can end your own connection from 2001:db8:5::7: it is reached through the gateway "
        "fe80::2, which ";
    EXPECT_EQ(board.run("ipv6 gateway clear"),
              wrongUsage(warning + "is to be removed; give --yes to do it all the same"));
    EXPECT_EQ(board.run("gateway set fe80::3"),
              wrongUsage(warning + "fe80::3 is to replace; give --yes to do it all the same"));
    EXPECT_EQ(board.run("ipv6 gateway clear -q --yes"), done(""));
    EXPECT_EQ(board.run("gateway set -q fe80::3"), done(""));
}

}  // namespace
}  // namespace mngctl::test
