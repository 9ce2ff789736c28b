#include "board/ntp/status.h"
#include "support/matchers.h"
#include "support/setText.h"

#include <ctime>

namespace {

// As chronyc 4.3 writes them.
const std::string tracking =
    "C0000201,192.0.2.1,11,1795279164.878440374,0.000004525,0.000005708,0.000005708,-2.428,0.001,"
    "26.123,0.000011845,0.000102040,2.0,Normal\n";
const std::string searching =
    "00000000,,0,0.000000000,0.000000000,0.000000000,0.000000000,0.000,0.000,0.000,1.000000000,"
    "1.000000000,0.0,Not synchronised\n";
const std::string names =
    "^,*,192.0.2.1,10,6,17,3,0.000000627,0.000006334,0.000006047\n"
    "^,?,192.0.2.77,0,7,0,4294967295,0.000000000,0.000000000,0.000000000\n"
    "^,+,ntp.example.net,2,8,377,3,0.000000627,0.000006334,0.000006047\n";
const std::string addresses =
    "^,*,192.0.2.1,10,6,17,3,0.000000627,0.000006334,0.000006047\n"
    "^,?,192.0.2.77,0,7,0,4294967295,0.000000000,0.000000000,0.000000000\n"
    "^,+,198.51.100.7,2,8,377,3,0.000000627,0.000006334,0.000006047\n";
const std::string data =
    "192.0.2.1,C0000201,123,192.0.2.10,C000020A,Normal,4,Server,10,6,64,-26,0.000000015,0.000000,"
    "0.000000,7F7F0101,,1795279157.353268234,-0.000006334,0.000011845,0.000000124,0.000147773,"
    "0.00,111,111,1111,No,No,Kernel,Kernel,4,4,4,4\n"
    "192.0.2.77,C000024D,123,[UNSPEC],00000000,Normal,0,Invalid,0,0,1,0,1.000000000,0.000000,"
    "0.000000,00000000,,0.000000000,0.000000000,0.000000000,0.000000000,0.000000000,0.00,000,000,"
    "0000,No,No,Invalid,Invalid,5,0,0,0\n"
    "198.51.100.7,C6336407,123,192.0.2.10,C000020A,Normal,4,Server,2,6,64,-26,0.000000015,"
    "0.000000,0.000000,7F7F0101,,1795279157.353268234,1.5,0.25,0.000000124,0.000147773,0.00,111,"
    "111,1111,No,No,Kernel,Kernel,4,4,4,4\n";

rpcSntpConfigHost configuration() {
    rpcSntpConfigHost config{};
    config.mode = 1;
    setText(config.servers[0].host, "192.0.2.77");
    setText(config.servers[1].host, "192.0.2.1");
    setText(config.servers[3].host, "ntp.example.net");
    return config;
}

TEST(ChronyStatus, TellsWhatTheClientFollows) {
    const auto info = ntp::statusOf(configuration(), {tracking + names, addresses + data});
    EXPECT_EQ(info.client.state, 2);
    EXPECT_EQ(info.client.mode, 1);
    EXPECT_EQ(info.client.leapIndicator, 0);
    EXPECT_EQ(info.client.stratum, 11);
    EXPECT_EQ(info.client.pollInterval, 64);
    EXPECT_EQ(info.client.offset, 5);
    EXPECT_EQ(info.client.delay, 12);
    EXPECT_EQ(info.client.dispersion, 102);
    EXPECT_STREQ(info.client.referenceHost, "192.0.2.1");
    const std::time_t updated = 1795279164;
    std::tm parts{};
    char text[24];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", ::localtime_r(&updated, &parts));
    EXPECT_STREQ(info.client.lastUpdate, text);
    EXPECT_EQ(info.unicast.pollInterval, 64);
    EXPECT_EQ(info.unicast.timeout, 7);
    EXPECT_EQ(info.unicast.retries, 0);
}

TEST(ChronyStatus, TellsOfTheServersAtTheirPlaces) {
    const auto info = ntp::statusOf(configuration(), {tracking + names, addresses + data});
    EXPECT_STREQ(info.servers[0].host, "192.0.2.77");
    EXPECT_EQ(info.servers[0].state, 1);
    EXPECT_EQ(info.servers[0].reachability, 0);
    EXPECT_EQ(info.servers[0].delay, 0);
    EXPECT_STREQ(info.servers[1].host, "192.0.2.1");
    EXPECT_EQ(info.servers[1].state, 3);
    EXPECT_EQ(info.servers[1].stratum, 10);
    EXPECT_EQ(info.servers[1].reachability, 017);
    EXPECT_EQ(info.servers[1].offset, -6);
    EXPECT_EQ(info.servers[1].delay, 12);
    EXPECT_STREQ(info.servers[2].host, "");
    EXPECT_EQ(info.servers[2].state, 0);
    EXPECT_STREQ(info.servers[3].host, "ntp.example.net");
    EXPECT_EQ(info.servers[3].state, 2);
    EXPECT_EQ(info.servers[3].reachability, 0377);
    EXPECT_EQ(info.servers[3].offset, 1'500'000);
    EXPECT_EQ(info.servers[3].delay, 250'000);
}

TEST(ChronyStatus, OfAClientThatSearchesHasNoValues) {
    const auto info = ntp::statusOf(configuration(), {searching, ""});
    EXPECT_EQ(info.client.state, 1);
    EXPECT_EQ(info.client.leapIndicator, 3);
    EXPECT_EQ(info.client.stratum, 0);
    EXPECT_EQ(info.client.delay, 0);
    EXPECT_STREQ(info.client.lastUpdate, "");
    EXPECT_EQ(info.servers[0].state, 1);
    EXPECT_EQ(info.servers[3].state, 1);
}

TEST(ChronyStatus, OfNoClientIsOff) {
    rpcSntpConfigHost config = configuration();
    config.mode = 0;
    const auto info = ntp::statusOfNone(config);
    EXPECT_EQ(info.client.state, 0);
    EXPECT_EQ(info.client.leapIndicator, 3);
    EXPECT_STREQ(info.servers[1].host, "192.0.2.1");
    EXPECT_EQ(info.servers[1].state, 0);
}

TEST(ChronyStatus, KeepsValuesInTheirRange) {
    const auto info = ntp::statusOf(
        configuration(),
        {"00000000,h,3,9999999999999999999,1e300,0,0,0,0,0,-1e300,99999,0,Insert second\n" +
             std::string("^,*,192.0.2.1,10,999,17,3,0,0,0\n"),
         ""});
    EXPECT_EQ(info.client.leapIndicator, 1);
    EXPECT_EQ(info.client.offset, 2147483647);
    EXPECT_EQ(info.client.delay, -2147483647);
    EXPECT_EQ(info.servers[1].state, 3);
}

TEST(ChronyStatus, IsNotMadeOfAnythingElse) {
    for (const std::string report : {"", "506 Cannot talk to daemon\n", "a,b,c\n",
                                     "C0000201,192.0.2.1,x,1,1,1,1,1,1,1,1,1,1,"
                                     "Normal\n"}) {
        EXPECT_THROW(ntp::statusOf(configuration(), {report, ""}), std::runtime_error) << report;
    }
}

}  // namespace
