#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Gateway, IsShown) {
    CannedBoard board;
    EXPECT_EQ(board.run("gateway show"), done("gateway: 192.0.2.254\nIPv6 gateway: none\n"));
    EXPECT_EQ(board.run("gateway show --json"),
              done(laidOut(R"({"gateway": "192.0.2.254", "ipv6Gateway": null})")));
    board.run("gateway clear");
    EXPECT_EQ(board.run("gateway show", Protocol::Udp),
              done("gateway: none\nIPv6 gateway: none\n"));
    board.run("gateway set FE80::1");
    EXPECT_EQ(board.run("gateway show --json"),
              done(laidOut(R"({"gateway": null, "ipv6Gateway": "fe80::1"})")));
}

TEST(Gateway, IsSetAndRemoved) {
    CannedBoard board;
    EXPECT_EQ(board.run("gateway set 192.0.2.253"), done("gateway: 192.0.2.253\n"));
    EXPECT_EQ(board.run("gateway clear"), done("gateway: none\n"));
    EXPECT_EQ(board.run("gateway clear -q"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre("get_network_info", "get_gateway", "set_gateway 3221226237",
                            "get_gateway", "get_network_info", "get_gateway", "set_gateway 0",
                            "get_gateway", "get_network_info", "get_gateway", "set_gateway 0"));
}

TEST(GatewaySet, SendsNothingThatIsWrong) {
    CannedBoard board;
    const auto refused = [&](const std::string& address, const std::string& sentence) {
        EXPECT_EQ(board.run("gateway set " + address), wrongUsage(sentence)) << address;
    };
    refused("0.0.0.0", "'0.0.0.0' is no gateway: 'mngctl gateway clear' removes it");
    refused("127.0.0.1",
            "'127.0.0.1' is a loopback address: expected the address of a host such as 192.0.2.10");
    refused("224.0.0.1",
            "'224.0.0.1' is a multicast address: expected the address of a host such as "
            "192.0.2.10");
    refused("192.0.2.254/24",
            "expected an IPv4 address, four numbers from 0 to 255 with dots between such as "
            "192.0.2.1, not '192.0.2.254/24'");
    EXPECT_THAT(board.requests(), IsEmpty());
    refused("192.0.2.10", "'192.0.2.10' is the board's own address, not a gateway");
    refused("192.0.2.0",
            "'192.0.2.0' is the network address of 192.0.2.0/24: expected that of a host in it, "
            "192.0.2.1 to 192.0.2.254");
    refused("192.0.2.255",
            "'192.0.2.255' is the broadcast address of 192.0.2.0/24: expected that of a host in "
            "it, 192.0.2.1 to 192.0.2.254");
    for (const std::string& request : board.requests()) {
        EXPECT_THAT(request, testing::StartsWith("get_"));
    }
}

TEST(GatewaySet, TellsWhatIsInForceAfterARefusal) {
    const CannedBoard board;
    EXPECT_EQ(
        board.run("gateway set 203.0.113.1"),
        refusedWith("the board refused to set the gateway 203.0.113.1: result -1 (failed); now in "
                    "force: no gateway, as 192.0.2.254 is removed already (203.0.113.1 is outside "
                    "the board's network 192.0.2.0/24)"));
    EXPECT_EQ(
        board.run("gateway set 203.0.113.1"),
        refusedWith("the board refused to set the gateway 203.0.113.1: result -1 (failed); now in "
                    "force: no gateway (203.0.113.1 is outside the board's network 192.0.2.0/24)"));
    const CannedBoard refusing({"--refuse"});
    EXPECT_EQ(
        refusing.run("gateway clear"),
        refusedWith("the board refused to remove the gateway: result -1 (failed); now in force: "
                    "the gateway 192.0.2.254"));
}

class GatewayFromAfar : public testing::Test {
protected:
    Variable connection{"SSH_CONNECTION", "198.51.100.7 50022 192.0.2.10 22"};
    CannedBoard board;
};

TEST_F(GatewayFromAfar, NeedsConsentToLoseTheWayBack) {
    const std::string warning =
        "this can end your own connection from 198.51.100.7: it is reached through the gateway "
        "192.0.2.254, which ";
    EXPECT_EQ(board.run("gateway clear"),
              wrongUsage(warning + "is to be removed; give --yes to do it all the same"));
    EXPECT_EQ(board.run("gateway set 192.0.2.253"),
              wrongUsage(warning + "192.0.2.253 is to replace; give --yes to do it all the same"));
    EXPECT_EQ(run(board.to({"gateway", "clear"}), "y\n", true),
              done(warning + "is to be removed\nDo it all the same? [y/N] gateway: none\n"));
    // What is gone cannot be lost.
    EXPECT_EQ(board.run("gateway clear"), done("gateway: none\n"));
    EXPECT_EQ(board.run("gateway set 192.0.2.253"), done("gateway: 192.0.2.253\n"));
    EXPECT_EQ(board.run("gateway set 192.0.2.253"), done("gateway: 192.0.2.253\n"));
    EXPECT_EQ(board.run("gateway clear --yes"), done("gateway: none\n"));
}

TEST_F(GatewayFromAfar, IsNotAskedWhoDoesNotComeThroughIt) {
    {
        const Variable neighbour("SSH_CONNECTION", "192.0.2.77 50022 192.0.2.10 22");
        EXPECT_EQ(board.run("gateway clear"), done("gateway: none\n"));
    }
    board.run("gateway set 192.0.2.254");
    const Variable other("SSH_CONNECTION", "198.51.100.7 50022 203.0.113.1 22");
    EXPECT_EQ(board.run("gateway clear"), done("gateway: none\n"));
}

}  // namespace
}  // namespace mngctl::test
