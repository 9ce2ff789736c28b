// IPv4 name servers.

#include "network/ResolverTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using Resolver = ResolverTest;

TEST_F(Resolver, SettingTheServersKeepsTheDomain) {
    EXPECT_EQ(networkSetDnsServers(serverB, serverA), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.net" pri=192.0.2.2 sec=192.0.2.1}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(Resolver, SecondaryEqualToThePrimaryIsDropped) {
    EXPECT_EQ(networkSetDnsServers(serverB, serverB), 0);
    EXPECT_EQ(platform.dns[2].ip_pri, serverB);
    EXPECT_EQ(platform.dns[2].ip_sec, 0U);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", readV4,
                    R"(varoUpdateDnsWS(2, {domain="example.net" pri=192.0.2.2 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, PrimaryMayBeMissing) {
    EXPECT_EQ(networkSetDnsServers(0, serverB), 0);
    EXPECT_EQ(platform.dns[2].ip_pri, 0U);
    EXPECT_EQ(platform.dns[2].ip_sec, serverB);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", readV4,
                    R"(varoUpdateDnsWS(2, {domain="example.net" pri=0.0.0.0 sec=192.0.2.2}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, ServersAreWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDnsServers(serverA, serverB), 0);
    EXPECT_THAT(journal(),
                ElementsAre("exclusiveLock", "varoGetDnsWS(2) -> 5",
                            R"(syslog(3, "[networkBLE]: setDnsServers: varoGetDns has failed!\n"))",
                            R"(varoUpdateDnsWS(2, {domain="" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
                            "~exclusiveLock"));
}

TEST_F(Resolver, ServersAreWrittenToTheSourceThatTheReadLeft) {
    platform.reportedSource = 1;
    EXPECT_EQ(networkSetDnsServers(serverA, serverB), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(varoGetDnsWS(2) -> 0 1 {domain="example.net" pri=192.0.2.1 sec=192.0.2.2})",
            R"(varoUpdateDnsWS(1, {domain="example.net" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(Resolver, ServersThatCannotBeWrittenAreReportedAsSignedDecimals) {
    platform.fail("varoUpdateDnsWS", 6);
    EXPECT_EQ(networkSetDnsServers(serverB, 1), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.net" pri=192.0.2.2 sec=0.0.0.1}) -> 6)",
            R"(syslog(3, "[networkBLE]: setDnsServers: varoUpdateDns has failed (dnsSource=2), dns.ip_pri=-1073741310, dns.ip_sec=1)! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(Resolver, DeletingTheServersKeepsTheDomain) {
    EXPECT_EQ(networkDeleteDnsServers(), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", readV4,
                    R"(varoUpdateDnsWS(2, {domain="example.net" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, DeletingTheServersGoesToTheManagementConfigurationWhateverTheReadReports) {
    platform.reportedSource = 1;
    EXPECT_EQ(networkDeleteDnsServers(), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", readV4AsOfALease,
                    R"(varoUpdateDnsWS(2, {domain="example.net" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, ServersAreDeletedEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkDeleteDnsServers(), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDnsWS(2) -> 5",
                    R"(syslog(3, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n"))",
                    R"(varoUpdateDnsWS(2, {domain="" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, ServersThatCannotBeDeletedAreReported) {
    platform.fail("varoUpdateDnsWS", 6);
    EXPECT_EQ(networkDeleteDnsServers(), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.net" pri=0.0.0.0 sec=0.0.0.0}) -> 6)",
            R"(syslog(3, "[networkBLE]: deleteDnsServers: varoUpdateDns has failed! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(Resolver, ServersAreReadFromTheManagementConfiguration) {
    platform.sourceInForce = 1;
    unsigned int primary = 7;
    unsigned int secondary = 8;
    EXPECT_EQ(networkGetDnsServers(&primary, &secondary), 0);
    EXPECT_EQ(primary, serverA);
    EXPECT_EQ(secondary, serverB);
    EXPECT_THAT(journal(), ElementsAre("sharedLock", readV4, "~sharedLock"));
}

TEST_F(Resolver, NullInPlaceOfAServerIsReported) {
    unsigned int servers[2] = {7, 8};
    for (unsigned int given = 0; given < 3; ++given) {  // a bit for each place
        unsigned int* const primary = (given & 1U) != 0 ? &servers[0] : nullptr;
        unsigned int* const secondary = (given & 2U) != 0 ? &servers[1] : nullptr;
        EXPECT_EQ(networkGetDnsServers(primary, secondary), -1);
        EXPECT_THAT(
            journal(),
            ElementsAreArray(sharing(error("getDnsServers failed! One of input args is NULL. "
                                           "primary: " +
                                           shown(primary) + ", secondary: " + shown(secondary)))));
    }
    EXPECT_THAT(servers, ElementsAre(7, 8));
}

TEST_F(Resolver, ServersThatCannotBeReadAreReportedByTheDeletesText) {
    platform.fail("varoGetDnsWS", 5);
    unsigned int primary = 7;
    unsigned int secondary = 8;
    EXPECT_EQ(networkGetDnsServers(&primary, &secondary), -1);
    EXPECT_EQ(primary, 7U);
    EXPECT_EQ(secondary, 8U);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", "varoGetDnsWS(2) -> 5",
                    R"(syslog(3, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n"))",
                    "~sharedLock"));
}

TEST_F(Resolver, ServersWithSourceAreWhatVaroLibChooses) {
    platform.sourceInForce = 1;
    int source = 77;
    unsigned int primary = 7;
    unsigned int secondary = 8;
    EXPECT_EQ(networkGetDnsServersWS(&source, &primary, &secondary), 0);
    EXPECT_EQ(source, 1);
    EXPECT_EQ(primary, 0xc6336401U);
    EXPECT_EQ(secondary, 0U);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(varoGetDnsWS(0) -> 0 1 {domain="lease.example" pri=198.51.100.1 sec=0.0.0.0})",
            "~sharedLock"));
}

TEST_F(Resolver, NullInPlaceOfSourceOrServerIsReported) {
    int source = 77;
    unsigned int servers[2] = {7, 8};
    for (unsigned int given = 0; given < 7; ++given) {  // a bit for each place
        int* const sourcePlace = (given & 1U) != 0 ? &source : nullptr;
        unsigned int* const primary = (given & 2U) != 0 ? &servers[0] : nullptr;
        unsigned int* const secondary = (given & 4U) != 0 ? &servers[1] : nullptr;
        EXPECT_EQ(networkGetDnsServersWS(sourcePlace, primary, secondary), -1);
        EXPECT_THAT(journal(), ElementsAreArray(sharing(error(
                                   "getDnsServers failed! One of input args is NULL. dnsSource: " +
                                   shown(sourcePlace) + ", primary: " + shown(primary) +
                                   ", secondary: " + shown(secondary)))));
    }
    EXPECT_EQ(source, 77);
    EXPECT_THAT(servers, ElementsAre(7, 8));
}

TEST_F(Resolver, ServersWithSourceThatCannotBeReadAreReportedByTheDeletesText) {
    platform.fail("varoGetDnsWS", 5);
    int source = 77;
    unsigned int primary = 7;
    unsigned int secondary = 8;
    EXPECT_EQ(networkGetDnsServersWS(&source, &primary, &secondary), -1);
    EXPECT_EQ(source, 77);
    EXPECT_EQ(primary, 7U);
    EXPECT_EQ(secondary, 8U);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", "varoGetDnsWS(0) -> 5",
                    R"(syslog(3, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n"))",
                    "~sharedLock"));
}

}  // namespace
