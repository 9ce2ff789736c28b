// SNTP client: configuration and status.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <cstring>
#include <string>

namespace {

class Sntp : public EntityTest {
protected:
    Sntp() {
        platform.time.byAddress[2] = {1, {{0xc0000201, 4, 1}, {0xc0000202, 3, 0}, {}}};
        platform.time.byAddress[1] = {1, {{0xc6336401, 4, 0}}};
        platform.time.byHost[2] = {1, {{"ntp.example", 4, 1, 0}, {}, {"2001:db8::1", 3, 0, 2}}};
        platform.time.byHost[1] = {1, {{"lease.example", 4, 0, 0}}};
        put(platform.time.infoHost.servers[0].host, "ntp.example");
        platform.time.infoHost.client.state = 2;
        platform.time.infoHost.servers[3].delay = -5;
        platform.time.info.client.state = 1;
        platform.time.info.servers[0].ipAddress = 0xc0000201;
        platform.time.info.servers[2].offset = -77;
    }

    const std::string storedByAddress = "{mode=1 {192.0.2.1 4 1} {192.0.2.2 3 0}}";
    const std::string storedByHost = R"({mode=1 {"ntp.example" 4 1 0} {} {"2001:db8::1" 3 0 2}})";
};

// Servers by address.

TEST_F(Sntp, ConfigurationIsWrittenAsItIsToTheManagementConfiguration) {
    rpcSntpConfig config{-9, {{0xffffffff, -1, 99}, {}, {0, 7, -8}}};
    const rpcSntpConfig before = config;
    EXPECT_EQ(networkUpdateSntpConfig(&config), 0);
    EXPECT_JOURNAL(
        sharing("varoUpdateNtpWS(2, {mode=-9 {255.255.255.255 -1 99} {} {0.0.0.0 7 -8}}) "
                "-> 0"));
    EXPECT_TRUE(areSame(config, before));
    EXPECT_TRUE(areSame(platform.time.byAddress[2], before));
}

TEST_F(Sntp, ConfigurationThatCannotBeWrittenFailsSilently) {
    rpcSntpConfig config{};
    for (const int code : {1, -5, -6, 77}) {
        platform.fail("varoUpdateNtpWS", code);
        EXPECT_EQ(networkUpdateSntpConfig(&config), -1);
        EXPECT_JOURNAL(sharing("varoUpdateNtpWS(2, {mode=0}) -> " + std::to_string(code)));
    }
}

TEST_F(Sntp, ConfigurationInForceIsReadFromWhicheverSource) {
    auto config = untouched<rpcSntpConfig>();
    EXPECT_EQ(networkGetSntpConfig(&config), 0);
    EXPECT_TRUE(areSame(config, platform.time.byAddress[2]));
    EXPECT_JOURNAL(sharing("varoGetNtpWS(0) -> 0 2 " + storedByAddress));
}

TEST_F(Sntp, ConfigurationIsReadFromTheSourceThatIsAskedFor) {
    rpcSntpConfig config{};
    int source = 1;
    EXPECT_EQ(networkGetSntpConfigWS(&source, &config), 0);
    EXPECT_EQ(source, 1);
    EXPECT_TRUE(areSame(config, platform.time.byAddress[1]));
    EXPECT_JOURNAL(sharing("varoGetNtpWS(1) -> 0 1 {mode=1 {198.51.100.1 4 0}}"));
    source = 0;
    EXPECT_EQ(networkGetSntpConfigWS(&source, &config), 0);
    EXPECT_EQ(source, 2);
    EXPECT_JOURNAL(sharing("varoGetNtpWS(0) -> 0 2 " + storedByAddress));
    source = 55;
    EXPECT_EQ(networkGetSntpConfigWS(&source, &config), -1);
    EXPECT_EQ(source, 55);
    EXPECT_JOURNAL(sharing("varoGetNtpWS(55) -> refused"));
}

TEST_F(Sntp, ConfigurationThatCannotBeReadFailsSilently) {
    platform.fail("varoGetNtpWS", 5);
    auto config = untouched<rpcSntpConfig>();
    int source = 2;
    EXPECT_EQ(networkGetSntpConfig(&config), -1);
    EXPECT_EQ(networkGetSntpConfigWS(&source, &config), -1);
    EXPECT_TRUE(isUntouched(config));
    EXPECT_EQ(source, 2);
    EXPECT_JOURNAL(sharing("varoGetNtpWS(0) -> 5"), sharing("varoGetNtpWS(2) -> 5"));
}

// Servers by host text.

TEST_F(Sntp, HostsAreClassifiedAndStored) {
    rpcSntpConfigHost config{};
    config.mode = 1;
    put(config.servers[0].host, "ntp.example");
    put(config.servers[2].host, "2001:db8::1");
    put(config.servers[3].host, "192.0.2.1");
    for (rpcSntpSrvHost& server : config.servers) {
        server.ntpVersion = 4;
        server.priority = -1;
        server.addressType = 99;
    }
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), 0);
    EXPECT_JOURNAL(
        sharing(R"(getIpAddrType("ntp.example") -> 3)", R"(checkIpHostname("ntp.example") -> 1)",
                R"(getIpAddrType("2001:db8::1") -> 2)", R"(checkIpv6Addr("2001:db8::1") -> 1)",
                R"(getIpAddrType("192.0.2.1") -> 1)", R"(checkIpv4Addr("192.0.2.1") -> 1)",
                R"(varoUpdateNtpHost(2, {mode=1 {"ntp.example" 4 -1 0} {"" 4 -1 99})"
                R"( {"2001:db8::1" 4 -1 2} {"192.0.2.1" 4 -1 1}}) -> 0)"));
    EXPECT_EQ(config.servers[0].addressType, 0);
    EXPECT_EQ(config.servers[1].addressType, 99);
    EXPECT_EQ(config.servers[2].addressType, 2);
    EXPECT_EQ(config.servers[3].addressType, 1);
}

TEST_F(Sntp, EmptyHostsAreStoredAsTheyAre) {
    rpcSntpConfigHost config{};
    config.mode = -3;
    config.servers[1].addressType = 7;
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), 0);
    EXPECT_JOURNAL(sharing(R"(varoUpdateNtpHost(2, {mode=-3 {} {"" 0 0 7}}) -> 0)"));
}

TEST_F(Sntp, FirstBadHostEndsTheOperationAndKeepsTheTypesBeforeIt) {
    rpcSntpConfigHost config{};
    put(config.servers[0].host, "2001:db8::1");
    put(config.servers[1].host, "no host!");
    put(config.servers[2].host, "192.0.2.1");
    config.servers[1].addressType = 98;
    config.servers[2].addressType = 99;
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), -5);
    EXPECT_JOURNAL(sharing(R"(getIpAddrType("2001:db8::1") -> 2)",
                           R"(checkIpv6Addr("2001:db8::1") -> 1)",
                           R"(getIpAddrType("no host!") -> 0)"));
    EXPECT_EQ(config.servers[0].addressType, 2);
    EXPECT_EQ(config.servers[1].addressType, 98);
    EXPECT_EQ(config.servers[2].addressType, 99);
}

TEST_F(Sntp, HostsOfNoKnownKindHaveTheirOwnCode) {
    for (const int kind : {0, 4, -1, -6, 1000000}) {
        platform.product.addressTypes["ntp.example"] = kind;
        rpcSntpConfigHost config{};
        put(config.servers[3].host, "ntp.example");
        EXPECT_EQ(networkUpdateSntpConfigHost(&config), -5);
        EXPECT_JOURNAL(sharing(R"(getIpAddrType("ntp.example") -> )" + std::to_string(kind)));
    }
}

TEST_F(Sntp, HostsOfAKnownKindThatAreNotValidHaveTheirOwnCode) {
    const struct {
        std::string host;
        std::string kind;
        std::string check;
    } rows[] = {
        {"192.0.2.256", "1", "checkIpv4Addr"},
        {"1234", "1", "checkIpv4Addr"},
        {"192.0.2.1.", "1", "checkIpv4Addr"},
        {"2001:db8:::1", "2", "checkIpv6Addr"},
        {"fe80::1%eth0", "2", "checkIpv6Addr"},
        {"-ntp.example", "3", "checkIpHostname"},
        {std::string(254, 'n'), "3", "checkIpHostname"},
    };
    for (const auto& row : rows) {
        rpcSntpConfigHost config{};
        put(config.servers[0].host, row.host);
        config.servers[0].addressType = 99;
        EXPECT_EQ(networkUpdateSntpConfigHost(&config), -6) << row.host;
        EXPECT_EQ(config.servers[0].addressType, 99);
        std::string shown = "(\"";
        shown += row.host;
        shown += "\") -> ";
        EXPECT_JOURNAL(sharing("getIpAddrType" + shown + row.kind, row.check + shown + "0"));
    }
}

TEST_F(Sntp, HostThatIsNotValidBehindOthersKeepsTheirTypes) {
    rpcSntpConfigHost config{};
    put(config.servers[0].host, "2001:db8::1");
    put(config.servers[1].host, "ntp.example");
    put(config.servers[2].host, "192.0.2.256");
    put(config.servers[3].host, "192.0.2.1");
    for (rpcSntpSrvHost& server : config.servers) {
        server.addressType = 99;
    }
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), -6);
    EXPECT_JOURNAL(
        sharing(R"(getIpAddrType("2001:db8::1") -> 2)", R"(checkIpv6Addr("2001:db8::1") -> 1)",
                R"(getIpAddrType("ntp.example") -> 3)", R"(checkIpHostname("ntp.example") -> 1)",
                R"(getIpAddrType("192.0.2.256") -> 1)", R"(checkIpv4Addr("192.0.2.256") -> 0)"));
    EXPECT_EQ(config.servers[0].addressType, 2);
    EXPECT_EQ(config.servers[1].addressType, 0);
    EXPECT_EQ(config.servers[2].addressType, 99);
    EXPECT_EQ(config.servers[3].addressType, 99);
}

TEST_F(Sntp, HostTextMayFillItsField) {
    rpcSntpConfigHost config{};
    std::memset(config.servers[0].host, 'h', sizeof config.servers[0].host);
    config.servers[0].ntpVersion = 0x68686868;  // what a text without an end would run into
    const std::string shown = "(\"" + std::string(256, 'h') + "\") -> ";
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), -6);
    EXPECT_JOURNAL(sharing("getIpAddrType" + shown + "3", "checkIpHostname" + shown + "0"));
}

TEST_F(Sntp, HostTextOf255GoesToTheChecksWhole) {
    platform.product.addressTypes[std::string(255, 'h')] = 1;
    rpcSntpConfigHost config{};
    put(config.servers[0].host, std::string(255, 'h'));
    const std::string shown = "(\"" + std::string(255, 'h') + "\") -> ";
    EXPECT_EQ(networkUpdateSntpConfigHost(&config), -6);
    EXPECT_JOURNAL(sharing("getIpAddrType" + shown + "1", "checkIpv4Addr" + shown + "0"));
}

TEST_F(Sntp, HostsThatCannotBeStoredFailSilently) {
    rpcSntpConfigHost config{};
    put(config.servers[1].host, "ntp.example");
    for (const int code : {3, -5}) {
        platform.fail("varoUpdateNtpHost", code);
        EXPECT_EQ(networkUpdateSntpConfigHost(&config), -1);
        EXPECT_JOURNAL(sharing(R"(getIpAddrType("ntp.example") -> 3)",
                               R"(checkIpHostname("ntp.example") -> 1)",
                               R"(varoUpdateNtpHost(2, {mode=0 {} {"ntp.example" 0 0 0}}) -> )" +
                                   std::to_string(code)));
    }
}

TEST_F(Sntp, HostsAreReadFromTheSourceThatIsAskedFor) {
    auto config = untouched<rpcSntpConfigHost>();
    int source = 1;
    EXPECT_EQ(networkGetSntpConfigWSHost(&source, &config), 0);
    EXPECT_EQ(source, 1);
    EXPECT_TRUE(areSame(config, platform.time.byHost[1]));
    EXPECT_JOURNAL(sharing(R"(varoGetNtpHost(1) -> 0 1 {mode=1 {"lease.example" 4 0 0}})"));
    source = 0;
    EXPECT_EQ(networkGetSntpConfigWSHost(&source, &config), 0);
    EXPECT_EQ(source, 2);
    EXPECT_JOURNAL(sharing("varoGetNtpHost(0) -> 0 2 " + storedByHost));
}

TEST_F(Sntp, HostsThatCannotBeReadFailSilently) {
    platform.fail("varoGetNtpHost", -2);
    rpcSntpConfigHost config{};
    int source = 1;
    EXPECT_EQ(networkGetSntpConfigWSHost(&source, &config), -1);
    EXPECT_EQ(source, 1);
    EXPECT_JOURNAL(sharing("varoGetNtpHost(1) -> -2"));
}

// Status.

TEST_F(Sntp, StatusIsReadFromWhicheverSource) {
    auto info = untouched<rpcSntpInfo>();
    EXPECT_EQ(networkGetSntpInfo(&info), 0);
    EXPECT_TRUE(areSame(info, platform.time.info));
    EXPECT_JOURNAL(sharing("varoGetNtpStatsWS(0) -> 0 2 {state=1 192.0.2.1}"));
}

TEST_F(Sntp, StatusIsReadFromWhicheverSourceWhateverTheCallerAsksFor) {
    for (const int asked : {0, 1, 2, 99}) {
        int source = asked;
        auto info = untouched<rpcSntpInfo>();
        EXPECT_EQ(networkGetSntpInfoWS(&source, &info), 0);
        EXPECT_EQ(source, 2);
        EXPECT_TRUE(areSame(info, platform.time.info));
        source = asked;
        auto infoHost = untouched<rpcSntpInfoHost>();
        EXPECT_EQ(networkGetSntpInfoWSHost(&source, &infoHost), 0);
        EXPECT_EQ(source, 2);
        EXPECT_TRUE(areSame(infoHost, platform.time.infoHost));
        EXPECT_JOURNAL(sharing("varoGetNtpStatsWS(0) -> 0 2 {state=1 192.0.2.1}"),
                       sharing(R"(varoGetNtpHostStats(0) -> 0 2 {state=2 "ntp.example"})"));
    }
}

TEST_F(Sntp, StatusThatCannotBeReadFailsSilentlyWithTheSourceReset) {
    platform.fail("varoGetNtpStatsWS", 5);
    platform.fail("varoGetNtpHostStats", -6);
    rpcSntpInfo info{};
    rpcSntpInfoHost infoHost{};
    int source = 1;
    EXPECT_EQ(networkGetSntpInfo(&info), -1);
    EXPECT_EQ(networkGetSntpInfoWS(&source, &info), -1);
    EXPECT_EQ(source, 0);
    source = 2;
    EXPECT_EQ(networkGetSntpInfoWSHost(&source, &infoHost), -1);
    EXPECT_EQ(source, 0);
    EXPECT_JOURNAL(sharing("varoGetNtpStatsWS(0) -> 5"), sharing("varoGetNtpStatsWS(0) -> 5"),
                   sharing("varoGetNtpHostStats(0) -> -6"));
}

}  // namespace
