#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::string off = "NTP client: off (cli)\nstate: off\n";

TEST(Ntp, IsShownWhileItIsOff) {
    const CannedBoard board;
    EXPECT_EQ(board.run("ntp show"), done(off + "servers: none\n"));
    EXPECT_EQ(board.run("ntp server add 192.0.2.1"),
              done(off + "servers:\n  192.0.2.1: not asked\n"));
}

TEST(Ntp, IsShownWithWhatItFollows) {
    const CannedBoard board;
    board.run("ntp server add 192.0.2.1 --prefer --version 4");
    board.run("ntp server add ntp.example.net");
    EXPECT_EQ(board.run("ntp on"),
              done("NTP client: on (cli)\n"
                   "state: synchronised\n"
                   "source: 192.0.2.1\n"
                   "stratum: 11\n"
                   "offset: +5 us\n"
                   "delay: 13 us\n"
                   "dispersion: 102 us\n"
                   "poll interval: 64 s\n"
                   "last update: 2031-02-03 04:05:06\n"
                   "servers:\n"
                   "  192.0.2.1: selected, stratum 10, offset -6 us, delay 12 us, answered 5 of "
                   "the last 8 requests, preferred, version 4\n"
                   "  ntp.example.net: unreachable, answered 0 of the last 8 requests\n"));
}

TEST(Ntp, IsShownAsJson) {
    const CannedBoard board;
    board.run("ntp server add 192.0.2.1");
    board.run("ntp on");
    EXPECT_EQ(board.run("ntp show --json"), done(laidOut(R"({"enabled": true,
              "configuredBy": "cli",
              "status": {"state": "synchronised", "server": "192.0.2.1", "stratum": 11,
                "leapIndicator": 0, "pollInterval": 64, "offset": 5, "delay": 13,
                "dispersion": 102, "lastUpdate": "2031-02-03 04:05:06"},
              "servers": [{"host": "192.0.2.1", "version": null, "preferred": false,
                  "status": {"state": "selected", "stratum": 10, "reachability": 31, "offset": -6,
                    "delay": 12}}]})")));
}

TEST(Ntp, WhoseStatusTheBoardCannotTellIsUnknown) {
    const CannedBoard board({"--ntp", "unknown"});
    board.run("ntp server add 192.0.2.1 -q");
    EXPECT_EQ(board.run("ntp show"),
              done("NTP client: off (cli)\n"
                   "state: unknown, the board cannot tell; its log has the cause\n"
                   "servers:\n  192.0.2.1: not asked\n"));
    EXPECT_THAT(board.run("ntp show --json").out, HasSubstr("\"status\": null"));
}

TEST(Ntp, ServersAreAddedChangedAndRemoved) {
    CannedBoard board;
    EXPECT_EQ(board.run("ntp server add 2001:DB8:0::1 -q"), done(""));
    EXPECT_EQ(board.run("ntp server add ntp.example.net -q"), done(""));
    EXPECT_EQ(board.run("ntp server add 2001:db8::1 --prefer"),
              done(off + "servers:\n  2001:db8::1: not asked, preferred\n"
                         "  ntp.example.net: not asked\n"));
    EXPECT_EQ(board.run("ntp server remove 2001:db8::1"),
              done(off + "servers:\n  ntp.example.net: not asked\n"));
    EXPECT_EQ(board.run("ntp server remove 192.0.2.9"),
              refusedWith("the board has no server 192.0.2.9"));
}

TEST(Ntp, AFifthServerIsRefused) {
    CannedBoard board;
    for (const std::string host : {"a", "b", "c", "d"}) {
        EXPECT_EQ(board.run("ntp server add " + host + " -q"), done(""));
    }
    EXPECT_EQ(board.run("ntp server add e"),
              refusedWith("the board keeps 4 servers, which it has"));
}

TEST(Ntp, NothingIsSentThatIsNoServer) {
    CannedBoard board;
    for (const std::string wrong :
         {"", "1.2.3", "192.0.2.300", "01.2.3.4", "fe80::1%mng0", "a b", "-a", "a..b", "host."}) {
        EXPECT_EQ(board.run({"ntp", "server", "add", "--", wrong}).exit, Exit::Usage) << wrong;
    }
    EXPECT_EQ(board.run({"ntp", "server", "add", std::string(255, 'a')}).exit, Exit::Usage);
    EXPECT_EQ(board.run("ntp server add 192.0.2.1 --version 5"),
              wrongUsage("expected version 3 or 4, not '5'"));
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Ntp, RefusalsAreExplained) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(board.run("ntp on"),
              refusedWith("the board refused to switch the NTP client on: result -1 "
                          "(failed); nothing has changed; the board's log tells the "
                          "cause"));
}

}  // namespace
}  // namespace mngctl::test
