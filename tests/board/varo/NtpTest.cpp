#include "tests/board/varo/VaroTest.h"

namespace {

using namespace varotest;

constexpr unsigned int host1 = 0xC0000201;  // 192.0.2.1

class Ntp : public VaroTest {
protected:
    using Hosts = rpcSntpConfigHost;
    using Addresses = rpcSntpConfig;

    static Hosts hosts(const std::vector<std::string>& names) {
        Hosts config{};
        config.mode = 1;
        for (std::size_t place = 0; place < names.size(); ++place) {
            setText(config.servers[place].host, names[place]);
        }
        return config;
    }

    static int store(int source, Hosts config) { return varoUpdateNtpHost(source, &config); }
    static int store(int source, Addresses config) { return varoUpdateNtpWS(source, &config); }

    static Hosts readHosts(int source) { return readBy(varoGetNtpHost, source); }
    static Addresses readAddresses(int source) { return readBy(varoGetNtpWS, source); }

    /// "host version priority type" of the entries.
    static std::vector<std::string> shown(const Hosts& config) {
        std::vector<std::string> all;
        for (const rpcSntpSrvHost& server : config.servers) {
            all.push_back(std::string(server.host) + " " + std::to_string(server.ntpVersion) + " " +
                          std::to_string(server.priority) + " " +
                          std::to_string(server.addressType));
        }
        return all;
    }

    static std::vector<std::string> shown(const Addresses& config) {
        std::vector<std::string> all;
        for (const rpcSntpSrv& server : config.servers) {
            all.push_back(std::to_string(server.ipAddress == 0 ? 0 : server.ipAddress - host1 + 1) +
                          " " + std::to_string(server.ntpVersion) + " " +
                          std::to_string(server.priority));
        }
        return all;
    }
};

TEST_F(Ntp, IsOffAndHasNoServersFromTheFactory) {
    for (const int source : {0, 1, 2}) {
        EXPECT_EQ(readHosts(source).mode, 0);
        EXPECT_THAT(shown(readHosts(source)), ElementsAre(" 0 0 0", " 0 0 0", " 0 0 0", " 0 0 0"));
        EXPECT_THAT(shown(readAddresses(source)), ElementsAre("0 0 0", "0 0 0", "0 0 0"));
    }
    Hosts config = readBy(varoDefNtpHost, 2);
    EXPECT_EQ(config.mode, 0);
    EXPECT_EQ(store(2, config), varo::success);
    EXPECT_EQ(store(1, config), varo::success);
    EXPECT_EQ(varoDefNtpHost(0, &config), varo::noSuchSource);
}

TEST_F(Ntp, KeepsHostsOfEachSourceOverARestart) {
    Hosts config = hosts({"ntp.example.net", "", "2001:db8::7b", "192.0.2.3"});
    config.servers[0].ntpVersion = 4;
    config.servers[2].priority = 1;
    config.servers[3].ntpVersion = 3;
    ASSERT_EQ(store(2, config), varo::success);
    ASSERT_EQ(store(1, hosts({"dhcp.example.net"})), varo::success);
    ASSERT_EQ(restart(), varo::success);
    EXPECT_EQ(readHosts(2).mode, 1);
    EXPECT_THAT(shown(readHosts(2)), ElementsAre("ntp.example.net 4 0 0", " 0 0 0",
                                                 "2001:db8::7b 0 1 2", "192.0.2.3 3 0 1"));
    EXPECT_STREQ(readHosts(1).servers[0].host, "dhcp.example.net");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Ntp, FindsTheAddressTypeItselfAndClearsEntriesWithoutAServer) {
    Hosts config = hosts({"192.0.2.1", "::1", "host"});
    for (rpcSntpSrvHost& server : config.servers) {
        server.addressType = 99;
    }
    config.servers[3].ntpVersion = 77;
    config.servers[3].priority = 77;
    ASSERT_EQ(store(2, config), varo::success);
    EXPECT_THAT(shown(readHosts(2)),
                ElementsAre("192.0.2.1 0 0 1", "::1 0 0 2", "host 0 0 0", " 0 0 0"));
}

TEST_F(Ntp, TakesARecordWithoutServers) {
    EXPECT_EQ(store(2, hosts({})), varo::success);
    EXPECT_EQ(readHosts(2).mode, 1);
}

TEST_F(Ntp, ShowsTheIpv4ServersInTheOtherView) {
    Hosts config = hosts({"ntp.example.net", "192.0.2.2", "2001:db8::1", "192.0.2.4"});
    config.servers[1].ntpVersion = 3;
    config.servers[3].priority = 1;
    ASSERT_EQ(store(2, config), varo::success);
    EXPECT_EQ(readAddresses(2).mode, 1);
    EXPECT_THAT(shown(readAddresses(2)), ElementsAre("2 3 0", "4 0 1", "0 0 0"));
}

TEST_F(Ntp, ShowsTheFirstThreeOfFourIpv4Servers) {
    ASSERT_EQ(store(2, hosts({"192.0.2.4", "192.0.2.3", "192.0.2.2", "192.0.2.1"})), varo::success);
    EXPECT_THAT(shown(readAddresses(2)), ElementsAre("4 0 0", "3 0 0", "2 0 0"));
}

TEST_F(Ntp, IsReplacedAsAWholeThroughTheIpv4View) {
    ASSERT_EQ(store(2, hosts({"a.example", "b.example", "c.example", "d.example"})), varo::success);
    Addresses config{};
    config.mode = 1;
    config.servers[0] = {host1, 4, 1};
    config.servers[2] = {host1 + 2, 0, 0};
    ASSERT_EQ(store(2, config), varo::success);
    EXPECT_THAT(shown(readHosts(2)),
                ElementsAre("192.0.2.1 4 1 1", " 0 0 0", "192.0.2.3 0 0 1", " 0 0 0"));
    EXPECT_THAT(shown(readAddresses(2)), ElementsAre("1 4 1", "3 0 0", "0 0 0"));
}

TEST_F(Ntp, ChoosesWhatWasSetByHandAsLongAsItNamesAServer) {
    ASSERT_EQ(store(1, hosts({"dhcp.example.net"})), varo::success);
    int source = 0;
    Hosts config{};
    EXPECT_EQ(varoGetNtpHost(&source, &config), varo::success);
    EXPECT_EQ(source, 1);
    EXPECT_STREQ(config.servers[0].host, "dhcp.example.net");
    ASSERT_EQ(store(2, hosts({"", "", "", "192.0.2.9"})), varo::success);
    source = 0;
    Addresses addresses{};
    EXPECT_EQ(varoGetNtpWS(&source, &addresses), varo::success);
    EXPECT_EQ(source, 2);
    EXPECT_EQ(addresses.servers[0].ipAddress, host1 + 8);
    EXPECT_STREQ(readHosts(1).servers[0].host, "dhcp.example.net");
}

TEST_F(Ntp, RefusesServersThatAreNoHosts) {
    ASSERT_EQ(store(2, hosts({"ntp.example.net"})), varo::success);
    for (const char* bad :
         {"192.0.2.256", "224.0.1.1", "255.255.255.255", "0.0.0.0", "::", "ff02::101",
          "fe80::1%eth0", "ntp_server", "ntp.example.net.", "-a", "a b", "12345::"}) {
        EXPECT_EQ(store(2, hosts({"good.example", bad})), varo::invalidValue) << bad;
    }
    EXPECT_EQ(log.take().at(0),
              "3 varoUpdateNtpHost: a server is neither a host name nor the address of one host");
    Hosts config = hosts({});
    std::memset(config.servers[3].host, 'a', sizeof config.servers[3].host);
    EXPECT_EQ(store(2, config), varo::invalidValue);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoUpdateNtpHost: server: the text is not terminated "
                                         "within its 256 bytes"));
    for (const unsigned int bad : {1U, 0x00FFFFFFU, 0xE0000101U, 0xFFFFFFFFU}) {
        Addresses addresses{};
        addresses.servers[2].ipAddress = bad;
        EXPECT_EQ(store(2, addresses), varo::invalidValue) << bad;
    }
    EXPECT_STREQ(readHosts(2).servers[0].host, "ntp.example.net");
    EXPECT_STREQ(readHosts(2).servers[1].host, "");
}

TEST_F(Ntp, RefusesNumbersOutOfRange) {
    for (const int bad : {-1, 1, 2, 5}) {
        Hosts config = hosts({"ntp.example.net"});
        config.servers[0].ntpVersion = bad;
        EXPECT_EQ(store(2, config), varo::invalidValue) << bad;
    }
    for (const int bad : {-1, 2}) {
        Hosts config = hosts({"ntp.example.net"});
        config.servers[0].priority = bad;
        EXPECT_EQ(store(2, config), varo::invalidValue) << bad;
        config = hosts({});
        config.mode = bad;
        EXPECT_EQ(store(2, config), varo::invalidValue) << bad;
        Addresses addresses{};
        addresses.mode = bad;
        EXPECT_EQ(store(2, addresses), varo::invalidValue) << bad;
    }
    EXPECT_THAT(log.lines(), Contains("3 varoUpdateNtpHost: protocol version: 5 is not in 3 to 4"));
    EXPECT_EQ(readHosts(2).mode, 0);
}

TEST_F(Ntp, RefusesOtherSourcesAndNull) {
    for (const int source : {0, 3, -1}) {
        EXPECT_EQ(store(source, hosts({})), varo::noSuchSource);
        EXPECT_EQ(store(source, Addresses{}), varo::noSuchSource);
    }
    int source = 3;
    Hosts config = hosts({"before"});
    EXPECT_EQ(varoGetNtpHost(&source, &config), varo::noSuchSource);
    EXPECT_EQ(source, 3);
    EXPECT_STREQ(config.servers[0].host, "before");
    EXPECT_EQ(varoGetNtpHost(nullptr, &config), varo::invalidArgument);
    EXPECT_EQ(varoGetNtpHost(&source, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateNtpHost(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoDefNtpHost(2, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetNtpWS(&source, nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateNtpWS(2, nullptr), varo::invalidArgument);
}

class NtpStatistics : public Ntp {
protected:
    /// Opens the library with a client that answers as told.
    void runClient(std::function<rpcSntpInfoHost(const rpcSntpConfigHost&)> client) {
        varoLibDestroy();
        varo::Configuration configuration{state, {}, log.receiver()};
        configuration.appliers.ntpStatistics = std::move(client);
        varo::configure(configuration);
        ASSERT_EQ(varoLibInit(), varo::success);
    }

    static rpcSntpInfoHost hostInfo(int& source) { return readBy(varoGetNtpHostStats, source); }
    static rpcSntpInfo addressInfo(int& source) { return readBy(varoGetNtpStatsWS, source); }

    /// A client that is synchronised to the second server.
    static rpcSntpInfoHost synchronised(const rpcSntpConfigHost& config) {
        rpcSntpInfoHost info{};
        info.client = {.state = 2,
                       .mode = config.mode,
                       .leapIndicator = 1,
                       .stratum = 3,
                       .pollInterval = 64,
                       .offset = -5,
                       .referenceHost = {},
                       .delay = 6,
                       .dispersion = 7,
                       .lastUpdate = "23:59:30 31/12/2024"};
        std::memcpy(info.client.referenceHost, config.servers[1].host, 256);
        info.unicast = {64, 5, 3};
        for (int place = 0; place < 4; ++place) {
            info.servers[place].state = place;
            std::memcpy(info.servers[place].host, config.servers[place].host, 256);
            info.servers[place].stratum = 10 + place;
            info.servers[place].reachability = 20 + place;
            info.servers[place].offset = 30 + place;
            info.servers[place].delay = 40 + place;
        }
        return info;
    }
};

TEST_F(NtpStatistics, AreThoseOfAClientThatIsOffWhenThereIsNone) {
    ASSERT_EQ(store(2, hosts({"ntp.example.net", "192.0.2.2"})), varo::success);
    int source = 0;
    const rpcSntpInfoHost info = hostInfo(source);
    EXPECT_EQ(source, 2);
    EXPECT_EQ(info.client.state, 0);
    EXPECT_EQ(info.client.mode, 1);
    EXPECT_EQ(info.client.leapIndicator, 3);
    EXPECT_STREQ(info.client.lastUpdate, "");
    EXPECT_EQ(info.servers[0].state, 0);
    EXPECT_STREQ(info.servers[0].host, "ntp.example.net");
    source = 0;
    const rpcSntpInfo addresses = addressInfo(source);
    EXPECT_EQ(addresses.client.state, 0);
    EXPECT_EQ(addresses.servers[0].ipAddress, host1 + 1);
    EXPECT_EQ(addresses.servers[1].ipAddress, 0U);
}

TEST_F(NtpStatistics, AreTheClientsInBothViews) {
    ASSERT_EQ(store(1, hosts({"ntp.example.net", "192.0.2.2", "2001:db8::1", "192.0.2.4"})),
              varo::success);
    runClient(synchronised);
    int source = 0;
    const rpcSntpInfoHost info = hostInfo(source);
    EXPECT_EQ(source, 1);
    EXPECT_EQ(info.client.state, 2);
    EXPECT_STREQ(info.client.referenceHost, "192.0.2.2");
    EXPECT_EQ(info.servers[2].state, 2);
    EXPECT_STREQ(info.servers[2].host, "2001:db8::1");

    source = 0;
    const rpcSntpInfo view = addressInfo(source);
    EXPECT_EQ(source, 1);
    EXPECT_EQ(view.client.state, 2);
    EXPECT_EQ(view.client.mode, 1);
    EXPECT_EQ(view.client.leapIndicator, 1);
    EXPECT_EQ(view.client.stratum, 3);
    EXPECT_EQ(view.client.pollInterval, 64);
    EXPECT_EQ(view.client.offset, -5);
    EXPECT_EQ(view.client.referenceAddress, host1 + 1);
    EXPECT_EQ(view.client.delay, 6);
    EXPECT_EQ(view.client.dispersion, 7);
    EXPECT_STREQ(view.client.lastUpdate, "23:59:30 31/12/2024");
    EXPECT_EQ(view.unicast.timeout, 5);
    EXPECT_EQ(view.servers[0].ipAddress, host1 + 1);
    EXPECT_EQ(view.servers[0].state, 1);
    EXPECT_EQ(view.servers[1].ipAddress, host1 + 3);
    EXPECT_EQ(view.servers[1].stratum, 13);
    EXPECT_EQ(view.servers[1].reachability, 23);
    EXPECT_EQ(view.servers[1].offset, 33);
    EXPECT_EQ(view.servers[1].delay, 43);
    EXPECT_EQ(view.servers[2].ipAddress, 0U);
}

TEST_F(NtpStatistics, OfASourceThatIsNotInForceAreThoseOfNoClient) {
    ASSERT_EQ(store(1, hosts({"dhcp.example.net"})), varo::success);
    ASSERT_EQ(store(2, hosts({"cli.example.net"})), varo::success);
    runClient(synchronised);
    int source = 1;
    const rpcSntpInfoHost other = hostInfo(source);
    EXPECT_EQ(source, 1);
    EXPECT_EQ(other.client.state, 0);
    EXPECT_STREQ(other.servers[0].host, "dhcp.example.net");
    source = 2;
    EXPECT_EQ(hostInfo(source).client.state, 2);
}

TEST_F(NtpStatistics, FailWhenTheClientCannotTell) {
    runClient(
        [](const rpcSntpConfigHost&) -> rpcSntpInfoHost { throw std::runtime_error("no answer"); });
    rpcSntpInfoHost info{};
    info.client.state = 77;
    int source = 0;
    EXPECT_EQ(varoGetNtpHostStats(&source, &info), varo::systemFailed);
    EXPECT_EQ(source, 0);
    EXPECT_EQ(info.client.state, 77);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoGetNtpHostStats: the status of the SNTP client is "
                                         "not known: no answer"));
    source = 9;
    EXPECT_EQ(varoGetNtpHostStats(&source, &info), varo::noSuchSource);
    EXPECT_EQ(varoGetNtpStatsWS(nullptr, nullptr), varo::invalidArgument);
}

}  // namespace
