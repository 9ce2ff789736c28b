#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;

class Script : public testing::Test {
protected:
    Outcome run(const std::string& lines) const { return test::run(board.to({}), lines); }

    CannedBoard board;
};

TEST_F(Script, CarriesOutOneCommandALine) {
    EXPECT_EQ(run("# the servers\n"
                  "dns set -q 192.0.2.1\n"
                  "\n"
                  "dns show   # both\n"
                  "rpc set_timezone_name 'Central European'"),
              done("IPv4 servers: 192.0.2.1 (cli)\n"
                   "IPv6 servers: none (dhcp)\n"
                   "result: 0\n"));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"0.0.0.0"})",
                            "get_dns_serversws", "get_ipv6dns_serversws",
                            "set_timezone_name Central European"));
}

TEST_F(Script, StopsAtTheFirstFailure) {
    EXPECT_EQ(run("rpc null\n"
                  "dns set 1.2.3\n"
                  "rpc null\n"),
              (Outcome{Exit::Usage, "answered\n",
                       "mngctl: line 2: expected an IPv4 address, four numbers from 0 to 255 with "
                       "dots between such as 192.0.2.1, not '1.2.3'\n"}));
    EXPECT_EQ(run("rpc set_hostname x\nrpc null\n"),
              (Outcome{Exit::Refused, "result: -1\n",
                       "mngctl: line 1: the board refused set_hostname: result -1 (failed)\n"}));
    EXPECT_EQ(run("\n'open\nrpc null\n"), wrongUsage("line 2: the line ends after an open '"));
    EXPECT_THAT(board.requests(), ElementsAre("null", "set_hostname x"));
}

TEST_F(Script, TellsThatNothingAnswers) {
    board.end();
    EXPECT_EQ(run("rpc null\nrpc null\n").exit, Exit::NoAnswer);
}

TEST_F(Script, EndsAtExit) {
    EXPECT_EQ(run("rpc null\nexit\nrpc null\n"), done("answered\n"));
    EXPECT_EQ(run("quit\nrpc null\n"), done(""));
    EXPECT_EQ(run(""), done(""));
}

TEST_F(Script, KeepsOptionsOfALineToThatLine) {
    EXPECT_EQ(run("rpc get_telnet --json\nrpc get_telnet\n"),
              done(laidOut(R"({"result": false})") + "result: off\n"));
    EXPECT_EQ(test::run(board.to({"--json"}), "rpc get_telnet\nrpc get_telnet\n"),
              done(laidOut(R"({"result": false} {"result": false})")));
}

TEST_F(Script, NeedsACommandOnALine) {
    EXPECT_EQ(run("--json\n"), wrongUsage("line 1: expected a command; 'help' shows all"));
}

TEST_F(Script, DoesNotTakeConsentFromItself) {
    EXPECT_EQ(run("factory-defaults\ny\n").exit, Exit::Usage);
    EXPECT_THAT(board.requests(), testing::IsEmpty());
}

}  // namespace
}  // namespace mngctl::test
