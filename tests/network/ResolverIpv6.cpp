// IPv6 domain and name servers.

#include "network/ResolverTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using ResolverIpv6 = ResolverTest;

// Domain.

TEST_F(ResolverIpv6, SettingTheIpv6DomainKeepsTheServers) {
    EXPECT_EQ(networkSetIPv6Domainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV6,
            R"(varoUpdateDns6(2, {domain="example.org" pri="2001:db8::1" sec="2001:db8::2"}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6DomainThatIsNullIsReported) {
    EXPECT_EQ(networkSetIPv6Domainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(syslog(3, "[networkBLE]: setIPv6Domainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6DomainIsWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkSetIPv6Domainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setIPv6Domainname: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="example.org" pri="" sec=""}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6DomainThatCannotBeWrittenIsReported) {
    platform.reportedSource = 1;
    platform.fail("varoUpdateDns6", 6);
    EXPECT_EQ(networkSetIPv6Domainname("example.org"), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(varoGetDns6(2) -> 0 1 {domain="six.example" pri="2001:db8::1" sec="2001:db8::2"})",
            R"(varoUpdateDns6(2, {domain="example.org" pri="2001:db8::1" sec="2001:db8::2"}) -> 6)",
            R"(syslog(3, "[networkBLE]: setIPv6Domainname: varoUpdateDns6 has failed! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, LongIpv6DomainIsStoredCutTo255AndReadCutTo99) {
    const std::string name = lettersOf(300);
    const std::string stored = recordV6(name.substr(0, 255), "2001:db8::1", "2001:db8::2");
    EXPECT_EQ(networkSetIPv6Domainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns6[2].domain, name.substr(0, 255));
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(readV6, "varoUpdateDns6(2, " + stored + ") -> 0")));

    Buffer<100> buffer;
    int source = 0;
    EXPECT_EQ(networkGetIPv6Domainname(&source, buffer.text), 0);
    EXPECT_EQ(buffer.content(), name.substr(0, 99));
    EXPECT_TRUE(buffer.isIntactBehind());
    EXPECT_EQ(source, 2);
    EXPECT_THAT(journal(), ElementsAreArray(sharing("varoGetDns6(0) -> 0 2 " + stored)));
}

TEST_F(ResolverIpv6, Ipv6DomainComesWithTheSourceThatVaroLibChose) {
    platform.sourceInForce = 1;
    Buffer<100> buffer;
    int source = 77;
    EXPECT_EQ(networkGetIPv6Domainname(&source, buffer.text), 0);
    EXPECT_EQ(buffer.content(), "lease6.example");
    EXPECT_EQ(buffer.text[99], '\0');
    EXPECT_EQ(source, 1);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock",
                    R"(varoGetDns6(0) -> 0 1 {domain="lease6.example" pri="2001:db8:1::1" sec=""})",
                    "~sharedLock"));
}

TEST_F(ResolverIpv6, Ipv6DomainBufferThatIsNullIsReported) {
    int source = 77;
    EXPECT_EQ(networkGetIPv6Domainname(&source, nullptr), -1);
    EXPECT_EQ(source, 77);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getIPv6Domainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~sharedLock"));
}

TEST_F(ResolverIpv6, Ipv6DomainThatCannotBeReadIsReported) {
    platform.fail("varoGetDns6", 5);
    Buffer<100> buffer;
    int source = 77;
    EXPECT_EQ(networkGetIPv6Domainname(&source, buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_EQ(source, 77);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", "varoGetDns6(0) -> 5",
                    R"(syslog(3, "[networkBLE]: getIPv6Domainname: varoGetDns6 has failed!\n"))",
                    "~sharedLock"));
}

// Servers.

TEST_F(ResolverIpv6, SettingTheIpv6ServersKeepsTheDomain) {
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::b"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV6,
            R"(varoUpdateDns6(2, {domain="six.example" pri="2001:db8::a" sec="2001:db8::b"}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersMayBeEqualOrEmpty) {
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::a"), 0);
    EXPECT_STREQ(platform.dns6[2].ipv6_sec, "2001:db8::a");
    const std::string equal = recordV6("six.example", "2001:db8::a", "2001:db8::a");
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(readV6, "varoUpdateDns6(2, " + equal + ") -> 0")));

    EXPECT_EQ(networkSetIPv6DnsServers("", ""), 0);
    EXPECT_STREQ(platform.dns6[2].ipv6_pri, "");
    EXPECT_STREQ(platform.dns6[2].ipv6_sec, "");
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               "varoGetDns6(2) -> 0 2 " + equal,
                               "varoUpdateDns6(2, " + recordV6("six.example", "", "") + ") -> 0")));
}

TEST_F(ResolverIpv6, Ipv6ServersAreWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", ""), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setIPv6DnsServers: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="" pri="2001:db8::a" sec=""}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersThatCannotBeWrittenAreReportedWithTheSourceThatTheReadLeft) {
    platform.reportedSource = 1;
    platform.fail("varoUpdateDns6", 6);
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::b"), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(varoGetDns6(2) -> 0 1 {domain="six.example" pri="2001:db8::1" sec="2001:db8::2"})",
            R"(varoUpdateDns6(1, {domain="six.example" pri="2001:db8::a" sec="2001:db8::b"}) -> 6)",
            R"(syslog(3, "[networkBLE]: setIPv6DnsServers: varoUpdateDns6 has failed (dnsSource=1), dns.ipv6_pri=2001:db8::a, dnsipv6.ip_sec=2001:db8::b)! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServerTextOf255IsStoredWhole) {
    const std::string primary = lettersOf(255);
    const std::string secondary(255, 'f');
    EXPECT_EQ(networkSetIPv6DnsServers(primary.c_str(), secondary.c_str()), 0);
    EXPECT_EQ(platform.dns6[2].ipv6_pri, primary);
    EXPECT_EQ(platform.dns6[2].ipv6_sec, secondary);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    readV6, "varoUpdateDns6(2, " + recordV6("six.example", primary, secondary) +
                                ") -> 0")));
}

using ResolverIpv6DeathTest = ResolverTest;

TEST_F(ResolverIpv6DeathTest, Ipv6ServerTextThatDoesNotFitEndsTheProcess) {
    const std::string text(256, 'f');
    EXPECT_EXIT(networkSetIPv6DnsServers(text.c_str(), ""), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(networkSetIPv6DnsServers("", text.c_str()), testing::KilledBySignal(SIGABRT), "");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

// It is not looked for: the values of both families are handed out before it shows.
TEST_F(ResolverIpv6DeathTest, NoPlaceForTheSourceEndsTheProcess) {
    Buffer<100> buffer;
    EXPECT_DEATH(networkGetDomainnameWS(nullptr, buffer.text), "");
    EXPECT_DEATH(networkGetIPv6Domainname(nullptr, buffer.text), "");
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

TEST_F(ResolverIpv6, DeletingTheIpv6ServersKeepsTheDomain) {
    EXPECT_EQ(networkDeleteIPv6DnsServers(), 0);
    EXPECT_THAT(journal(),
                ElementsAre("exclusiveLock", readV6,
                            R"(varoUpdateDns6(2, {domain="six.example" pri="" sec=""}) -> 0)",
                            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersAreDeletedEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkDeleteIPv6DnsServers(), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: deleteIPv6DnsServers: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="" pri="" sec=""}) -> 0)", "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersThatCannotBeDeletedAreReported) {
    platform.reportedSource = 1;
    platform.fail("varoUpdateDns6", 6);
    EXPECT_EQ(networkDeleteIPv6DnsServers(), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(varoGetDns6(2) -> 0 1 {domain="six.example" pri="2001:db8::1" sec="2001:db8::2"})",
            R"(varoUpdateDns6(2, {domain="six.example" pri="" sec=""}) -> 6)",
            R"(syslog(3, "[networkBLE]: deleteIPv6DnsServers: varoUpdateDns6 has failed! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersComeWithTheSourceThatVaroLibChose) {
    platform.sourceInForce = 1;
    Buffer<99> primary;
    Buffer<99> secondary;
    int source = 77;
    EXPECT_EQ(networkGetIPv6DnsServers(&source, primary.text, secondary.text), 0);
    EXPECT_EQ(primary.content(), "2001:db8:1::1");
    EXPECT_EQ(secondary.content(), "");
    EXPECT_EQ(source, 1);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock",
                    R"(varoGetDns6(0) -> 0 1 {domain="lease6.example" pri="2001:db8:1::1" sec=""})",
                    "~sharedLock"));
}

TEST_F(ResolverIpv6, Ipv6ServersAreReadCutTo98) {
    const std::string fitting = lettersOf(98);
    const std::string tooLong = lettersOf(99);
    put(platform.dns6[2].ipv6_pri, fitting);
    put(platform.dns6[2].ipv6_sec, tooLong);
    Buffer<99> primary;
    Buffer<99> secondary;
    int source = 0;
    EXPECT_EQ(networkGetIPv6DnsServers(&source, primary.text, secondary.text), 0);
    EXPECT_EQ(primary.content(), fitting);
    EXPECT_EQ(secondary.content(), fitting);
    EXPECT_TRUE(primary.isIntactBehind());
    EXPECT_TRUE(secondary.isIntactBehind());
    EXPECT_EQ(source, 2);
    EXPECT_THAT(journal(), ElementsAreArray(sharing("varoGetDns6(0) -> 0 2 " +
                                                    recordV6("six.example", fitting, tooLong))));
}

TEST_F(ResolverIpv6, NullInPlaceOfSourceOrIpv6ServerIsReported) {
    int source = 77;
    Buffer<99> servers[2];
    for (unsigned int given = 0; given < 7; ++given) {  // a bit for each place
        int* const sourcePlace = (given & 1U) != 0 ? &source : nullptr;
        char* const primary = (given & 2U) != 0 ? servers[0].text : nullptr;
        char* const secondary = (given & 4U) != 0 ? servers[1].text : nullptr;
        EXPECT_EQ(networkGetIPv6DnsServers(sourcePlace, primary, secondary), -1);
        EXPECT_THAT(journal(),
                    ElementsAreArray(sharing(
                        error("getIPv6DnsServers failed! One of input args is NULL. dnsSource: " +
                              shown(sourcePlace) + ", primary: " + shown(primary) +
                              ", secondary: " + shown(secondary)))));
    }
    EXPECT_EQ(source, 77);
    EXPECT_TRUE(servers[0].isUntouched());
    EXPECT_TRUE(servers[1].isUntouched());
}

TEST_F(ResolverIpv6, Ipv6ServersThatCannotBeReadAreReported) {
    platform.fail("varoGetDns6", 5);
    Buffer<99> primary;
    Buffer<99> secondary;
    int source = 77;
    EXPECT_EQ(networkGetIPv6DnsServers(&source, primary.text, secondary.text), -1);
    EXPECT_TRUE(primary.isUntouched());
    EXPECT_TRUE(secondary.isUntouched());
    EXPECT_EQ(source, 77);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", "varoGetDns6(0) -> 5",
                    R"(syslog(3, "[networkBLE]: getIPv6DnsServersWS: varoGetDns6 has failed!\n"))",
                    "~sharedLock"));
}

}  // namespace
