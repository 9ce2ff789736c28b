#include "board/ntp/chronyConfiguration.h"
#include "support/matchers.h"
#include "support/setText.h"

namespace {

const ntp::Files files("/state/ntp");

rpcSntpConfigHost withServer(const std::string& host) {
    rpcSntpConfigHost config{};
    config.mode = 1;
    setText(config.servers[0].host, host);
    return config;
}

TEST(ChronyConfiguration, IsWantedByAClientThatIsOnAndHasAServer) {
    EXPECT_FALSE(ntp::isWanted({}));
    rpcSntpConfigHost config{};
    config.mode = 1;
    EXPECT_FALSE(ntp::isWanted(config));
    setText(config.servers[3].host, "192.0.2.1");
    EXPECT_TRUE(ntp::isWanted(config));
    config.mode = 0;
    EXPECT_FALSE(ntp::isWanted(config));
}

TEST(ChronyConfiguration, HasTheServersWithTheirOptions) {
    rpcSntpConfigHost config = withServer("192.0.2.1");
    config.servers[0].priority = 1;
    setText(config.servers[2].host, "2001:db8::1");
    config.servers[2].ntpVersion = 3;
    setText(config.servers[3].host, "ntp.example.net");
    EXPECT_THAT(ntp::configurationOf(config, files, "mng0"),
                HasSubstr("server 192.0.2.1 iburst prefer\n"
                          "server 2001:db8::1 iburst version 3\n"
                          "server ntp.example.net iburst\n"));
}

TEST(ChronyConfiguration, IsThatOfAClientOnTheInterface) {
    const std::string text = ntp::configurationOf(withServer("192.0.2.1"), files, "mng0");
    EXPECT_THAT(text, HasSubstr("\nport 0\ncmdport 0\n"
                                "bindcmdaddress /state/ntp/chronyd.sock\n"
                                "driftfile /state/ntp/chrony.drift\n"
                                "pidfile /state/ntp/chronyd.pid\n"
                                "bindacqdevice mng0\n"));
    EXPECT_THAT(ntp::configurationOf(withServer("192.0.2.1"), files, ""),
                Not(HasSubstr("bindacqdevice")));
}

TEST(ChronyConfiguration, AsksAServerOnce) {
    rpcSntpConfigHost config = withServer("192.0.2.1");
    setText(config.servers[1].host, "192.0.2.1");
    config.servers[1].priority = 1;
    const std::string text = ntp::configurationOf(config, files, "mng0");
    EXPECT_EQ(text.find("server"), text.rfind("server"));
}

TEST(ChronyConfiguration, TakesTheLongestHostText) {
    EXPECT_THAT(ntp::configurationOf(withServer(std::string(255, 'a')), files, "mng0"),
                HasSubstr("server " + std::string(255, 'a') + " iburst\n"));
}

TEST(ChronyConfiguration, IsNotMadeOfTextsThatAreNoHosts) {
    for (const std::string host : {"a b", "a\nallow", "a#b", "fe80::1%mng0", "a\"b", "\xE9"}) {
        EXPECT_THROW(ntp::configurationOf(withServer(host), files, "mng0"), std::runtime_error)
            << host;
    }
}

TEST(ChronyConfiguration, IsNotMadeForPathsThatCannotServe) {
    const auto config = withServer("192.0.2.1");
    EXPECT_THROW(ntp::configurationOf(config, ntp::Files("/a b"), "mng0"), std::runtime_error);
    EXPECT_THROW(ntp::configurationOf(config, ntp::Files("/" + std::string(90, 'a')), "mng0"),
                 std::runtime_error);
}

}  // namespace
