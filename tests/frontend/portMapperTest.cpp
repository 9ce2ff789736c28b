#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

// Each canned board here has a network of its own, in which nothing else answers.

TEST(PortMapper, NamesThePortForEachProtocol) {
    CannedBoard board({"--namespace", "--mapper", "full"});
    EXPECT_EQ(board.runInside("dns show"), done("IPv4 servers: none (cli)\n"
                                                "IPv6 servers: none (dhcp)\n"));
    // Asked once: the handle is kept.
    EXPECT_THAT(board.requests(),
                ElementsAre("getport 536870921 1 6", "get_dns_serversws", "get_ipv6dns_serversws"));
    EXPECT_EQ(board.runInside("--udp board status -q").exit, Exit::Done);
    EXPECT_THAT(board.requests(), ElementsAre("getport 536871168 1 17", "status"));
}

TEST(PortMapper, Absent) {
    const CannedBoard board({"--namespace"});
    const Outcome expected = noAnswer(
        "no port mapper answers at 127.0.0.1 (port 111): start rpcbind on the board, or "
        "name the program's port with --port");
    EXPECT_EQ(board.runInside("dns show"), expected);
    EXPECT_EQ(board.runInside("--udp dns show"), expected);
}

TEST(PortMapper, Silent) {
    const CannedBoard board({"--namespace", "--mapper", "silent"});
    const Outcome expected = noAnswer(
        "the port mapper at 127.0.0.1 did not answer within 0.2 s: restart rpcbind on the "
        "board, or name the program's port with --port");
    EXPECT_EQ(board.runInside("--timeout 0.2 dns show"), expected);
    EXPECT_EQ(board.runInside("--timeout 0.2 --udp dns show"), expected);
}

TEST(PortMapper, WithoutTheProgram) {
    const CannedBoard board({"--namespace", "--mapper", "empty"});
    EXPECT_EQ(board.runInside("dns show"),
              noAnswer("the network program (0x20000009 version 1, TCP) is not registered with the "
                       "port mapper at 127.0.0.1: start the board's business-logic process "
                       "(bllhost)"));
    EXPECT_EQ(board.runInside("--udp board stop"),
              noAnswer("the control program (0x20000100 version 1, UDP) is not registered with the "
                       "port mapper at 127.0.0.1: start the board's business-logic process "
                       "(bllhost)"));
}

TEST(PortMapper, WithThePortOfAProcessThatIsGone) {
    const CannedBoard board({"--namespace", "--mapper", "stale"});
    const Outcome expected = noAnswer(
        "the port mapper at 127.0.0.1 names port 9 for the network program, but nothing listens "
        "there: the board's business-logic process has ended; start it again");
    EXPECT_EQ(board.runInside("rpc null"), expected);
    EXPECT_EQ(board.runInside("--udp rpc null"), expected);
}

TEST(PortMapper, AHostThatCannotBeReached) {
    const CannedBoard board({"--namespace"});
    EXPECT_THAT(board.runInside("--host 192.0.2.1 dns show").err,
                StartsWith("mngctl: the port mapper at 192.0.2.1 cannot be reached: "));
    EXPECT_THAT(board.runInside("--host 192.0.2.1 --port 9 dns show").err,
                StartsWith("mngctl: 192.0.2.1 port 9 cannot be reached: "));
}

}  // namespace
}  // namespace mngctl::test
