// How the DHCP client's process is run and what is made of its reports, with clients that behave as
// a test needs them to.

#include "tests/board/varo/network/DhcpTest.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

namespace {

using namespace varotest;

constexpr const char* lease =
    "export ip=192.0.2.60 subnet=255.255.255.0 router=192.0.2.1 dns='192.0.2.53 192.0.2.54' "
    "domain=example.org lease=600 serverid=192.0.2.1\n";

constexpr const char* rest = "while :; do sleep 1; done\n";

class Client : public DhcpTest {
protected:
    /// Opens the library with a client that is run by this script.
    void openWith(const std::string& script) {
        useClient(script);
        open();
    }
    std::string path(const std::string& name) const { return (directory.path() / name).string(); }
};

TEST_F(Client, LeaseThatIsLostGoesWithItsResolverValues) {
    openWith(std::string(lease) + "\"$REPORT\" deconfig; \"$REPORT\" bound\nwhile [ ! -e " +
             path("lose") + " ]; do sleep 0.05; done\n\"$REPORT\" deconfig\n" + rest);
    ASSERT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
    writeFile(path("lose"), "");
    EXPECT_TRUE(lines.await("4 the DHCP lease of 192.0.2.60/24 is lost"));
    EXPECT_TRUE(eventually([] { return addresses().empty(); }));
    EXPECT_EQ(gateways(), "");
    EXPECT_EQ(resolver(), "2 00000000 00000000 ");
}

TEST_F(Client, LeaseWithAnotherAddressReplacesTheOneBefore) {
    openWith(std::string(lease) + "\"$REPORT\" bound\nip=192.0.2.61 router= lease=700\n" +
             "\"$REPORT\" renew\n" + rest);
    EXPECT_TRUE(eventually([] { return addresses() == "192.0.2.61/24 dynamic"; }));
    EXPECT_TRUE(eventually([] { return gateways().empty(); }));
    EXPECT_THAT(shell("ip address show dev mng0"), HasSubstr("valid_lft 7"));
}

TEST_F(Client, GatewaySetByHandServesALeaseWithoutRouter) {
    openWith(std::string(lease) + "router=\n\"$REPORT\" bound\nwhile [ ! -e " + path("renew") +
             " ]; do sleep 0.05; done\n\"$REPORT\" renew\nrouter=192.0.2.9\n\"$REPORT\" renew\n" +
             rest);
    ASSERT_TRUE(eventually([] { return addresses() == "192.0.2.60/24 dynamic"; }));
    EXPECT_EQ(addRoute("192.0.2.3"), varo::success);
    EXPECT_EQ(stored(), "||192.0.2.3");
    writeFile(path("renew"), "");
    EXPECT_TRUE(eventually([] { return gateways() == "192.0.2.9"; }));
    EXPECT_EQ(lines.count("192.0.2.60/24 via no router"), 2) << lines.all();
}

TEST_F(Client, ReportThatIsNotUsableChangesNothing) {
    openWith(
        std::string(lease) +
        "dns='192.0.2.53 x'\n\"$REPORT\" bound\nsubnet=255.0.255.0 \"$REPORT\" renew\n"
        "ip=224.0.0.1 \"$REPORT\" renew\nip=x \"$REPORT\" renew\nlease=soon \"$REPORT\" renew\n"
        "\"$REPORT\" nonsense\n\"$REPORT\" nak\n" +
        rest);
    EXPECT_TRUE(lines.await("5 the DHCP server has refused the request"));
    EXPECT_EQ(lines.count("3 a report of the DHCP client is not usable: "), 5) << lines.all();
    EXPECT_EQ(lines.count("4 left out of the DHCP lease: dns \"x\""), 1) << lines.all();
    EXPECT_EQ(addresses(), "192.0.2.60/24 dynamic");
    EXPECT_EQ(gateways(), "192.0.2.1");
}

TEST_F(Client, ThatIgnoresItsEndIsKilled) {
    openWith("trap '' TERM\n\"$REPORT\" leasefail\n" + std::string(rest));
    ASSERT_TRUE(lines.await("alarm: the DHCP server does not respond"));
    ASSERT_THAT(clients(), SizeIs(1));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(switchDhcp(false), varo::success);
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(Client, ThatDiesIsStartedAgainWithAGrowingPause) {
    openWith("echo no carrier\nexit 3\n");
    EXPECT_TRUE(lines.await(
        "4 the DHCP client has ended with status 3: no carrier; it is started again in 1 s"));
    EXPECT_TRUE(lines.await("it is started again in 2 s"));
    EXPECT_EQ(lines.count("7 DHCP client: no carrier"), 2) << lines.all();
    // Switching it off and on starts it at once.
    EXPECT_EQ(switchDhcp(false), varo::success);
    EXPECT_EQ(switchDhcp(true), varo::success);
    EXPECT_TRUE(eventually([&] { return lines.count("it is started again in 1 s") == 2; }));
}

TEST_F(Client, ThatCannotBeRunIsNamed) {
    configuration.dhcpClient = {"no-such-dhcp-client"};
    configure();
    open();
    EXPECT_TRUE(
        lines.await("the DHCP client has ended with status 127: cannot run "
                    "no-such-dhcp-client: No such file or directory"));
}

TEST_F(Client, HasTheUsualSignalsAndNoDescriptorsOfTheProcess) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    // One that is not closed on exec.
    const int inherited = ::fcntl(0, F_DUPFD, 100);
    // The shell reads its own state: it blocks signals for a moment whenever it starts a program.
    openWith("while read -r line; do echo \"$line\"; done < /proc/$$/status > " + path("status") +
             "; ls -l /proc/$$/fd > " + path("fds") + "; readlink /proc/$$/fd/0 > " +
             path("input") + "\n\"$REPORT\" leasefail\n" + rest);
    EXPECT_TRUE(lines.await("alarm: the DHCP server does not respond"));
    ::close(inherited);
    ::signal(SIGPIPE, handler);
    ASSERT_EQ(pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);

    const std::string status = readFile(path("status"));
    EXPECT_THAT(status, AllOf(HasSubstr("SigBlk:\t0000000000000000"),
                              HasSubstr("SigIgn:\t0000000000000000")));
    EXPECT_THAT(readFile(path("fds")), Not(HasSubstr(" 100 ->")));
    EXPECT_EQ(readFile(path("input")), "/dev/null\n");
    // The standard ones and the socket; from 10 on are the shell's own.
    EXPECT_EQ(shell("grep -o ' [0-9] ->' " + path("fds")), " 0 ->\n 1 ->\n 2 ->\n 9 ->")
        << readFile(path("fds"));
    EXPECT_EQ(shell("grep -c socket: " + path("fds")), "1") << readFile(path("fds"));
}

TEST_F(Client, ReportsOfAClientThatIsSwitchedOffCountNoMore) {
    openWith(std::string(lease) + "trap '\"$REPORT\" bound; exit' TERM\n\"$REPORT\" leasefail\n" +
             rest);
    ASSERT_TRUE(lines.await("alarm: the DHCP server does not respond"));
    EXPECT_EQ(switchDhcp(false), varo::success);
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_EQ(addresses(), "");
    EXPECT_EQ(stored(), "||");
    EXPECT_EQ(resolver(), "2 00000000 00000000 ");
}

TEST_F(Client, RecordIsStoredAndChecked) {
    openWith(rest);
    varoLib_s_dhcp record{};
    EXPECT_EQ(varoUpdateDhcp(&record), varo::invalidValue);
    EXPECT_EQ(varoUpdateDhcp(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetDhcp(nullptr), varo::invalidArgument);
    record.updateSelector = 2;
    std::memset(record.circuitId, 'x', sizeof record.circuitId);
    EXPECT_EQ(varoUpdateDhcp(&record), varo::invalidValue);
    EXPECT_TRUE(isDhcpOn());

    setText(record.circuitId, std::string(149, 'c'));
    record.option82Enabled = 1;
    EXPECT_EQ(varoUpdateDhcp(&record), varo::success);
    close();
    open();
    varoLib_s_dhcp read{};
    ASSERT_EQ(varoGetDhcp(&read), varo::success);
    EXPECT_EQ(read.dhcpEnabled, 0U);
    EXPECT_EQ(read.option82Enabled, 1U);
    EXPECT_EQ(read.circuitId, std::string(149, 'c'));
}

TEST_F(Client, IsStartedAndEndedByManyCallersAtOnce) {
    openWith(std::string(lease) + "\"$REPORT\" bound\n" + rest);
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 4; ++caller) {
        callers.emplace_back([caller] {
            for (int round = 0; round < 5; ++round) {
                EXPECT_EQ(switchDhcp((caller + round) % 2 == 0), varo::success);
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(switchDhcp(false), varo::success);
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_EQ(switchDhcp(true), varo::success);
    EXPECT_TRUE(eventually([] { return addresses() == "192.0.2.60/24 dynamic"; }));
}

}  // namespace
