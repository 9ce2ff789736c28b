#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Dns : public testing::TestWithParam<Protocol> {
protected:
    Outcome run(const std::string& line) const { return board.run(line, GetParam()); }

    CannedBoard board;
};

INSTANTIATE_TEST_SUITE_P(Over, Dns, bothProtocols, nameOfProtocol);

TEST_P(Dns, ShowsNoneAndTheSource) {
    EXPECT_EQ(run("dns show"), done("IPv4 servers: none (cli)\n"
                                    "IPv6 servers: none (dhcp)\n"));
    EXPECT_THAT(board.requests(), ElementsAre("get_dns_serversws", "get_ipv6dns_serversws"));
}

TEST_P(Dns, SetsAPairAndShowsWhatTheBoardNowSays) {
    EXPECT_EQ(run("dns set 192.0.2.1 192.0.2.2"),
              done("IPv4 servers: 192.0.2.1 192.0.2.2 (cli)\n"));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"192.0.2.2"})",
                            "get_dns_serversws"));
}

TEST_P(Dns, SetsOneAndClearsTheSecondary) {
    EXPECT_EQ(run("dns set --quiet 192.0.2.1"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"0.0.0.0"})"));
}

TEST_P(Dns, SetsIpv6InCanonicalForm) {
    EXPECT_EQ(run("dns set 2001:DB8:0:0::1 2001:db8::2"),
              done("IPv6 servers: 2001:db8::1 2001:db8::2 (cli)\n"));
    EXPECT_THAT(
        board.requests(),
        ElementsAre(R"(set_ipv6dns_servers {"primary":"2001:db8::1","secondary":"2001:db8::2"})",
                    "get_ipv6dns_serversws"));
}

TEST_P(Dns, SetsOneOfEachFamily) {
    EXPECT_EQ(run("dns set 192.0.2.1 2001:db8::1"), done("IPv4 servers: 192.0.2.1 (cli)\n"
                                                         "IPv6 servers: 2001:db8::1 (cli)\n"));
    EXPECT_EQ(run("dns show --json"), done(laidOut(R"({
              "ipv4": {"primary": "192.0.2.1", "secondary": null, "source": "cli"},
              "ipv6": {"primary": "2001:db8::1", "secondary": null, "source": "cli"}})")));
}

TEST_P(Dns, ClearsOneFamilyOrBoth) {
    run("dns set 192.0.2.1 192.0.2.2 2001:db8::1 2001:db8::2");
    board.requests();
    EXPECT_EQ(run("dns clear --ipv4"), done("IPv4 servers: none (cli)\n"));
    EXPECT_THAT(board.requests(), ElementsAre("delete_dns_servers", "get_dns_serversws"));
    EXPECT_EQ(run("dns clear --ipv6 -q"), done(""));
    EXPECT_THAT(board.requests(), ElementsAre("delete_ipv6dns_servers"));
    EXPECT_EQ(run("dns clear"), done("IPv4 servers: none (cli)\n"
                                     "IPv6 servers: none (dhcp)\n"));
    EXPECT_THAT(board.requests(), ElementsAre("delete_dns_servers", "delete_ipv6dns_servers",
                                              "get_dns_serversws", "get_ipv6dns_serversws"));
}

TEST(DnsSet, SetsARepeatedAddressOnce) {
    CannedBoard board;
    EXPECT_EQ(board.run("dns set 192.0.2.1 192.0.2.1"),
              (Outcome{Exit::Done, "IPv4 servers: 192.0.2.1 (cli)\n",
                       "mngctl: 192.0.2.1 is given twice; it is set once\n"}));
    EXPECT_EQ(board.run("dns set -q 2001:db8::1 2001:DB8:0::1"),
              (Outcome{Exit::Done, "", "mngctl: 2001:DB8:0::1 is given twice; it is set once\n"}));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"0.0.0.0"})",
                            "get_dns_serversws",
                            R"(set_ipv6dns_servers {"primary":"2001:db8::1","secondary":""})"));
}

TEST(DnsSet, SendsNothingThatIsWrong) {
    CannedBoard board;
    const auto refused = [&](const std::string& addresses, const std::string& sentence) {
        EXPECT_EQ(board.run("dns set " + addresses), wrongUsage(sentence)) << addresses;
    };
    const std::string expected =
        "expected an IPv4 address, four numbers from 0 to 255 with dots between such as 192.0.2.1, "
        "not ";
    refused("192.0.2.300", expected + "'192.0.2.300'");
    refused("1.2.3", expected + "'1.2.3'");
    refused("3221225985", expected + "'3221225985'");
    refused("ns.example.net", expected + "'ns.example.net'");
    refused("192.0.2.1,192.0.2.2", expected + "'192.0.2.1,192.0.2.2'");
    refused("192.0.2.1 2001:db8::g",
            "expected an IPv6 address such as 2001:db8::1, not '2001:db8::g'");
    refused("[2001:db8::1]", "expected an IPv6 address such as 2001:db8::1, not '[2001:db8::1]'");
    refused("fe80::1%eth0",
            "'fe80::1%eth0' names a zone, which the board cannot store: leave out the % and what "
            "follows it");
    refused("0.0.0.0", "'0.0.0.0' is the unspecified address, not the address of a server");
    refused("255.255.255.255",
            "'255.255.255.255' is the broadcast address, not the address of a server");
    refused("224.0.0.1", "'224.0.0.1' is a multicast address, not the address of a server");
    refused("::", "'::' is the unspecified address, not the address of a server");
    refused("ff02::1", "'ff02::1' is a multicast address, not the address of a server");
    refused("192.0.2.1 192.0.2.2 192.0.2.3", "the board keeps 2 IPv4 servers, 3 are given");
    refused("::1 ::2 ::3 192.0.2.3", "the board keeps 2 IPv6 servers, 3 are given");
    refused("", "expected one or two addresses of name servers");
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(DnsSet, TellsThatTheBoardRefuses) {
    CannedBoard board({"--refuse"});
    EXPECT_EQ(board.run("dns set 192.0.2.1 2001:db8::1"),
              refusedWith("the board refused to set the IPv4 servers: result -1 (failed)"));
    EXPECT_EQ(board.run("dns clear --ipv6"),
              refusedWith("the board refused to clear the IPv6 servers: result -1 (failed)"));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"0.0.0.0"})",
                            "delete_ipv6dns_servers"));
}

}  // namespace
}  // namespace mngctl::test
