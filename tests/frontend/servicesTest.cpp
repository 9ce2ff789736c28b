#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Services, AreShown) {
    CannedBoard board;
    EXPECT_EQ(board.run("telnet show"), done("telnet: off\n"));
    EXPECT_EQ(board.run("ssh show"), done("SSH: on\n"));
    EXPECT_EQ(board.run("ftp show"), done("FTP: off\n"));
    EXPECT_EQ(board.run("telnet show --json"), done(laidOut(R"({"enabled": false})")));
    EXPECT_EQ(board.run("ftp show --json", Protocol::Udp), done(laidOut(R"({"enabled": false})")));
    EXPECT_THAT(board.requests(), ElementsAre("get_telnet", "get_ssh", "is_ftp_enabled",
                                              "get_telnet", "is_ftp_enabled"));
}

TEST(Services, AreSwitchedAndReadBack) {
    CannedBoard board;
    EXPECT_EQ(board.run("telnet on"), done("telnet: on\n"));
    EXPECT_EQ(board.run("ssh off"), done("SSH: off\n"));
    EXPECT_EQ(board.run("ftp on"), done("FTP: on\n"));
    EXPECT_EQ(board.run("ftp off --json"), done(laidOut(R"({"enabled": false})")));
    EXPECT_EQ(board.run("telnet off --quiet"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre("pty_get_max_sess", "telnet_enable 1", "get_telnet", "pty_get_max_sess",
                            "ssh_enable 0", "get_ssh", "ftp_enable 1", "is_ftp_enabled",
                            "ftp_enable 0", "is_ftp_enabled", "telnet_enable 0"));
}

TEST(Services, TellThatSwitchingTelnetResetsTheLimits) {
    const CannedBoard board;
    EXPECT_EQ(board.run("sessions limit -q 7"), done(""));
    EXPECT_EQ(board.run("telnet on"),
              (Outcome{Exit::Done, "telnet: on\n",
                       "mngctl: switching telnet has set the limit from 7 sessions back to 5 "
                       "sessions\n"}));
}

TEST(Services, TellWhatIsStoredAfterARefusal) {
    const CannedBoard board({"--refuse"});
    const std::string reason = "; the board's log tells why it is not in force";
    EXPECT_EQ(board.run("telnet on"),
              refusedWith("the board refused to switch telnet on: result -1 (failed); stored now: "
                          "telnet off" +
                          reason));
    EXPECT_EQ(
        board.run("ssh off"),
        refusedWith("the board refused to switch SSH off: result -1 (failed); stored now: SSH on" +
                    reason));
    EXPECT_EQ(
        board.run("ftp on -q"),
        refusedWith("the board refused to switch FTP on: result -1 (failed); stored now: FTP off" +
                    reason));
}

TEST(Services, TellThatTheBoardCannotSayWhetherFtpIsOn) {
    const CannedBoard board({"--fail-half-way", "is_ftp_enabled"});
    EXPECT_EQ(board.run("ftp show"),
              refusedWith("the board cannot tell whether FTP is on: result 7"));
}

TEST(Sessions, AreShown) {
    const CannedBoard board;
    EXPECT_EQ(board.run("sessions show"), done("limit: 5 sessions, telnet and SSH together\n"
                                               "idle timeout of telnet: 10 minutes\n"));
    EXPECT_EQ(board.run("sessions show --json"),
              done(laidOut(R"({"limit": 5, "idleMinutes": 10})")));
}

TEST(Sessions, AreLimited) {
    CannedBoard board;
    EXPECT_EQ(board.run("sessions limit 1"), done("limit: 1 session, telnet and SSH together\n"
                                                  "idle timeout of telnet: 10 minutes\n"));
    EXPECT_EQ(board.run("sessions limit default"),
              done("limit: 5 sessions, telnet and SSH together\n"
                   "idle timeout of telnet: 10 minutes\n"));
    EXPECT_THAT(board.requests(), ElementsAre("pty_set_max_sess 1", "pty_get_max_sess",
                                              "pty_set_max_sess 0", "pty_get_max_sess"));
}

TEST(Sessions, AreNotLimitedToNoneOrNonsense) {
    CannedBoard board;
    EXPECT_EQ(
        board.run("sessions limit 0"),
        wrongUsage("a limit of 0 would shut everybody out: 'mngctl telnet off' and 'mngctl ssh "
                   "off' do that; 'default' stands for the board's own limit"));
    for (const char* wrong : {"-1", "many", "4294967296", "5x"}) {
        EXPECT_EQ(board.run({"sessions", "limit", "--", wrong}).exit, Exit::Usage) << wrong;
    }
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Sessions, StayLimitedAfterARefusal) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(
        board.run("sessions limit 65"),
        refusedWith("the board refused to set the limit to 65 sessions: result -1 (failed); now "
                    "in force: at most 5 sessions"));
}

}  // namespace
}  // namespace mngctl::test
