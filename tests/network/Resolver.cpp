#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int serverA = 0xc0000201;  // 192.0.2.1
constexpr unsigned int serverB = 0xc0000202;  // 192.0.2.2

class Resolver : public EntityTest {
protected:
    Resolver() {
        put(platform.dns[2].domain, "example.net");
        platform.dns[2].ip_pri = serverA;
        platform.dns[2].ip_sec = serverB;
        put(platform.dns[1].domain, "lease.example");
        platform.dns[1].ip_pri = 0xc6336401;  // 198.51.100.1
        put(platform.dns6[2].domain, "six.example");
        put(platform.dns6[2].ipv6_pri, "2001:db8::1");
        put(platform.dns6[2].ipv6_sec, "2001:db8::2");
        put(platform.dns6[1].domain, "lease6.example");
        put(platform.dns6[1].ipv6_pri, "2001:db8:1::1");
    }

    const std::string readV4 =
        R"(varoGetDnsWS(2) -> 0 2 {domain="example.net" pri=192.0.2.1 sec=192.0.2.2})";
    const std::string readV6 =
        R"(varoGetDns6(2) -> 0 2 {domain="six.example" pri="2001:db8::1" sec="2001:db8::2"})";
};

// Host name.

TEST_F(Resolver, HostNameCannotBeSet) {
    EXPECT_EQ(networkSetHostname("board"), -1);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Resolver, HostNameThatIsNullIsReported) {
    EXPECT_EQ(networkSetHostname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            R"(syslog(3, "[networkBLE]: setHostname failed! One of input args is NULL. hostname: (nil)\n"))"));
}

TEST_F(Resolver, HostNameCannotBeRead) {
    Buffer<100> buffer;
    EXPECT_EQ(networkGetHostname(buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Resolver, HostNameBufferThatIsNullIsReported) {
    EXPECT_EQ(networkGetHostname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            R"(syslog(3, "[networkBLE]: getHostname failed! One of input args is NULL. hostname: (nil)\n"))"));
}

// IPv4 domain.

TEST_F(Resolver, SettingTheDomainKeepsTheServers) {
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(Resolver, DomainThatIsNullIsReported) {
    EXPECT_EQ(networkSetDomainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(syslog(3, "[networkBLE]: setDomainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~exclusiveLock"));
}

TEST_F(Resolver, DomainIsWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDnsWS(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setDomainname: varoGetDns has failed!\n"))",
                    R"(varoUpdateDnsWS(2, {domain="example.org" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, DomainIsWrittenWithWhatAFailedReadLeft) {
    varoLib_s_dns left{};
    left.ip_pri = serverB;
    platform.dnsLeftByFailure = left;
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        testing::Contains(
            R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.2 sec=0.0.0.0}) -> 0)"));
}

TEST_F(Resolver, DomainThatCannotBeWrittenIsReported) {
    platform.fail("varoUpdateDnsWS", 6);
    EXPECT_EQ(networkSetDomainname("example.org"), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.1 sec=192.0.2.2}) -> 6)",
            R"(syslog(3, "[networkBLE]: setDomainname: varoUpdateDns has failed! Return value: 6\n"))",
            "~exclusiveLock"));
}

TEST_F(Resolver, DomainIsWrittenToTheManagementConfigurationWhateverSourceTheReadReports) {
    platform.reportedSource = 1;
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(journal(), testing::Contains(testing::StartsWith("varoUpdateDnsWS(2,")));
}

TEST_F(Resolver, LongDomainIsStoredCutTo255AndReadCutTo99) {
    std::string name;
    for (int i = 0; i < 300; ++i) {
        name += static_cast<char>('a' + i % 26);
    }
    EXPECT_EQ(networkSetDomainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns[2].domain, name.substr(0, 255));

    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), 0);
    EXPECT_EQ(buffer.content(), name.substr(0, 99));
    EXPECT_TRUE(buffer.isIntactBehind());
    journal();
}

TEST_F(Resolver, DomainOf255IsStoredWhole) {
    const std::string name(255, 'x');
    EXPECT_EQ(networkSetDomainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns[2].domain, name);
    journal();
}

TEST_F(Resolver, EmptyDomainClearsIt) {
    EXPECT_EQ(networkSetDomainname(""), 0);
    EXPECT_STREQ(platform.dns[2].domain, "");
    EXPECT_EQ(platform.dns[2].ip_pri, serverA);
    journal();
}

TEST_F(Resolver, DomainIsReadFromTheManagementConfiguration) {
    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), 0);
    EXPECT_EQ(buffer.content(), "example.net");
    EXPECT_EQ(buffer.text[99], '\0');
    EXPECT_EQ(buffer.text[98], '#');
    EXPECT_TRUE(buffer.isIntactBehind());
    EXPECT_THAT(journal(), ElementsAre("sharedLock", readV4, "~sharedLock"));
}

TEST_F(Resolver, DomainOf99IsReadWholeAndOneOf100Cut) {
    for (const std::size_t length : {99, 100}) {
        put(platform.dns[2].domain, std::string(length, 'y'));
        Buffer<100> buffer;
        EXPECT_EQ(networkGetDomainname(buffer.text), 0);
        EXPECT_EQ(buffer.content(), std::string(99, 'y'));
        EXPECT_TRUE(buffer.isIntactBehind());
    }
    journal();
}

TEST_F(Resolver, DomainBufferThatIsNullIsReported) {
    EXPECT_EQ(networkGetDomainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getDomainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~sharedLock"));
}

TEST_F(Resolver, DomainThatCannotBeReadIsReported) {
    platform.fail("varoGetDnsWS", 5);
    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_THAT(journal(),
                ElementsAre("sharedLock", "varoGetDnsWS(2) -> 5",
                            R"(syslog(3, "[networkBLE]: getDomainname: varoGetDns has failed!\n"))",
                            "~sharedLock"));
}

TEST_F(Resolver, DomainWithSourceIsWhatVaroLibChooses) {
    platform.sourceInForce = 1;
    Buffer<100> buffer;
    int source = 77;
    EXPECT_EQ(networkGetDomainnameWS(&source, buffer.text), 0);
    EXPECT_EQ(buffer.content(), "lease.example");
    EXPECT_EQ(buffer.text[99], '\0');
    EXPECT_TRUE(buffer.isIntactBehind());
    EXPECT_EQ(source, 1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(varoGetDnsWS(0) -> 0 1 {domain="lease.example" pri=198.51.100.1 sec=0.0.0.0})",
            "~sharedLock"));
}

TEST_F(Resolver, DomainWithSourceReportsANullBufferByTheOtherGettersText) {
    int source = 77;
    EXPECT_EQ(networkGetDomainnameWS(&source, nullptr), -1);
    EXPECT_EQ(source, 77);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getDomainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~sharedLock"));
}

TEST_F(Resolver, DomainWithSourceThatCannotBeReadIsReported) {
    platform.fail("varoGetDnsWS", 5);
    Buffer<100> buffer;
    int source = 77;
    EXPECT_EQ(networkGetDomainnameWS(&source, buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_EQ(source, 77);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", "varoGetDnsWS(0) -> 5",
                    R"(syslog(3, "[networkBLE]: getDomainnameWS: varoGetDnsWS has failed!\n"))",
                    "~sharedLock"));
}

// IPv4 servers.

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
    journal();
}

TEST_F(Resolver, PrimaryMayBeMissing) {
    EXPECT_EQ(networkSetDnsServers(0, serverB), 0);
    EXPECT_EQ(platform.dns[2].ip_pri, 0U);
    EXPECT_EQ(platform.dns[2].ip_sec, serverB);
    journal();
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
    EXPECT_THAT(journal(), testing::Contains(testing::StartsWith("varoUpdateDnsWS(2,")));
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
    unsigned int server = 7;
    const std::string text =
        "[networkBLE]: getDnsServers failed! One of input args is NULL. primary: ";
    EXPECT_EQ(networkGetDnsServers(nullptr, nullptr), -1);
    EXPECT_EQ(networkGetDnsServers(&server, nullptr), -1);
    EXPECT_EQ(networkGetDnsServers(nullptr, &server), -1);
    EXPECT_EQ(server, 7U);
    EXPECT_THAT(
        journal(),
        ElementsAre("sharedLock", R"(syslog(3, ")" + text + R"((nil), secondary: (nil)\n"))",
                    "~sharedLock", "sharedLock",
                    testing::MatchesRegex(
                        R"(syslog\(3, ".*primary: 0x[0-9a-f]+, secondary: \(nil\)\\n"\))"),
                    "~sharedLock", "sharedLock",
                    testing::MatchesRegex(
                        R"(syslog\(3, ".*primary: \(nil\), secondary: 0x[0-9a-f]+\\n"\))"),
                    "~sharedLock"));
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
    unsigned int server = 7;
    EXPECT_EQ(networkGetDnsServersWS(nullptr, nullptr, nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getDnsServers failed! One of input args is NULL. dnsSource: (nil), primary: (nil), secondary: (nil)\n"))",
            "~sharedLock"));
    EXPECT_EQ(networkGetDnsServersWS(nullptr, &server, &server), -1);
    EXPECT_EQ(networkGetDnsServersWS(&source, nullptr, &server), -1);
    EXPECT_EQ(networkGetDnsServersWS(&source, &server, nullptr), -1);
    EXPECT_EQ(source, 77);
    EXPECT_EQ(server, 7U);
    EXPECT_THAT(journal(), testing::Not(testing::Contains(testing::HasSubstr("varo"))));
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

// IPv6 domain.

TEST_F(Resolver, SettingTheIpv6DomainKeepsTheServers) {
    EXPECT_EQ(networkSetIPv6Domainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV6,
            R"(varoUpdateDns6(2, {domain="example.org" pri="2001:db8::1" sec="2001:db8::2"}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6DomainThatIsNullIsReported) {
    EXPECT_EQ(networkSetIPv6Domainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(syslog(3, "[networkBLE]: setIPv6Domainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6DomainIsWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkSetIPv6Domainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setIPv6Domainname: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="example.org" pri="" sec=""}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6DomainThatCannotBeWrittenIsReported) {
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

TEST_F(Resolver, LongIpv6DomainIsStoredCutTo255AndReadCutTo99) {
    const std::string name(300, 'z');
    EXPECT_EQ(networkSetIPv6Domainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns6[2].domain, name.substr(0, 255));
    Buffer<100> buffer;
    int source = 0;
    EXPECT_EQ(networkGetIPv6Domainname(&source, buffer.text), 0);
    EXPECT_EQ(buffer.content(), name.substr(0, 99));
    EXPECT_TRUE(buffer.isIntactBehind());
    journal();
}

TEST_F(Resolver, Ipv6DomainComesWithTheSourceThatVaroLibChose) {
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

TEST_F(Resolver, Ipv6DomainBufferThatIsNullIsReported) {
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

TEST_F(Resolver, Ipv6DomainThatCannotBeReadIsReported) {
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

// IPv6 servers.

TEST_F(Resolver, SettingTheIpv6ServersKeepsTheDomain) {
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::b"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV6,
            R"(varoUpdateDns6(2, {domain="six.example" pri="2001:db8::a" sec="2001:db8::b"}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6ServersMayBeEqualOrEmpty) {
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::a"), 0);
    EXPECT_STREQ(platform.dns6[2].ipv6_sec, "2001:db8::a");
    EXPECT_EQ(networkSetIPv6DnsServers("", ""), 0);
    EXPECT_STREQ(platform.dns6[2].ipv6_pri, "");
    journal();
}

TEST_F(Resolver, Ipv6ServersAreWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", ""), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setIPv6DnsServers: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="" pri="2001:db8::a" sec=""}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6ServersThatCannotBeWrittenAreReportedWithTheSourceThatTheReadLeft) {
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

TEST_F(Resolver, Ipv6ServerTextOf255IsStoredWhole) {
    const std::string text(255, 'f');
    EXPECT_EQ(networkSetIPv6DnsServers(text.c_str(), text.c_str()), 0);
    EXPECT_EQ(platform.dns6[2].ipv6_pri, text);
    EXPECT_EQ(platform.dns6[2].ipv6_sec, text);
    journal();
}

using ResolverDeathTest = Resolver;

TEST_F(ResolverDeathTest, Ipv6ServerTextThatDoesNotFitEndsTheProcess) {
    const std::string text(256, 'f');
    EXPECT_EXIT(networkSetIPv6DnsServers(text.c_str(), ""), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(networkSetIPv6DnsServers("", text.c_str()), testing::KilledBySignal(SIGABRT), "");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

TEST_F(Resolver, DeletingTheIpv6ServersKeepsTheDomain) {
    EXPECT_EQ(networkDeleteIPv6DnsServers(), 0);
    EXPECT_THAT(journal(),
                ElementsAre("exclusiveLock", readV6,
                            R"(varoUpdateDns6(2, {domain="six.example" pri="" sec=""}) -> 0)",
                            "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6ServersAreDeletedEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkDeleteIPv6DnsServers(), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDns6(2) -> 5",
                    R"(syslog(3, "[networkBLE]: deleteIPv6DnsServers: varoGetDns6 has failed!\n"))",
                    R"(varoUpdateDns6(2, {domain="" pri="" sec=""}) -> 0)", "~exclusiveLock"));
}

TEST_F(Resolver, Ipv6ServersThatCannotBeDeletedAreReported) {
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

TEST_F(Resolver, Ipv6ServersComeWithTheSourceThatVaroLibChose) {
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

TEST_F(Resolver, Ipv6ServersAreReadCutTo98) {
    put(platform.dns6[2].ipv6_pri, std::string(98, 'a'));
    put(platform.dns6[2].ipv6_sec, std::string(99, 'b'));
    Buffer<99> primary;
    Buffer<99> secondary;
    int source = 0;
    EXPECT_EQ(networkGetIPv6DnsServers(&source, primary.text, secondary.text), 0);
    EXPECT_EQ(primary.content(), std::string(98, 'a'));
    EXPECT_EQ(secondary.content(), std::string(98, 'b'));
    EXPECT_TRUE(primary.isIntactBehind());
    EXPECT_TRUE(secondary.isIntactBehind());
    journal();
}

TEST_F(Resolver, NullInPlaceOfSourceOrIpv6ServerIsReported) {
    int source = 77;
    Buffer<99> server;
    EXPECT_EQ(networkGetIPv6DnsServers(nullptr, nullptr, nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getIPv6DnsServers failed! One of input args is NULL. dnsSource: (nil), primary: (nil), secondary: (nil)\n"))",
            "~sharedLock"));
    EXPECT_EQ(networkGetIPv6DnsServers(nullptr, server.text, server.text), -1);
    EXPECT_EQ(networkGetIPv6DnsServers(&source, nullptr, server.text), -1);
    EXPECT_EQ(networkGetIPv6DnsServers(&source, server.text, nullptr), -1);
    EXPECT_EQ(source, 77);
    EXPECT_TRUE(server.isUntouched());
    EXPECT_THAT(journal(), testing::Not(testing::Contains(testing::HasSubstr("varo"))));
}

TEST_F(Resolver, Ipv6ServersThatCannotBeReadAreReported) {
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
