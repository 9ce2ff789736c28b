// Host name and IPv4 domain.

#include "network/ResolverTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using ResolverDomains = ResolverTest;

// Host name.

TEST_F(ResolverDomains, HostNameCannotBeSet) {
    EXPECT_EQ(networkSetHostname("board"), -1);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(ResolverDomains, HostNameThatIsNullIsReported) {
    EXPECT_EQ(networkSetHostname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            R"(syslog(3, "[networkBLE]: setHostname failed! One of input args is NULL. hostname: (nil)\n"))"));
}

TEST_F(ResolverDomains, HostNameCannotBeRead) {
    Buffer<100> buffer;
    EXPECT_EQ(networkGetHostname(buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(ResolverDomains, HostNameBufferThatIsNullIsReported) {
    EXPECT_EQ(networkGetHostname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            R"(syslog(3, "[networkBLE]: getHostname failed! One of input args is NULL. hostname: (nil)\n"))"));
}

// Domain.

TEST_F(ResolverDomains, SettingTheDomainKeepsTheServers) {
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4,
            R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(ResolverDomains, DomainThatIsNullIsReported) {
    EXPECT_EQ(networkSetDomainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock",
            R"(syslog(3, "[networkBLE]: setDomainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~exclusiveLock"));
}

TEST_F(ResolverDomains, DomainIsWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDnsWS(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setDomainname: varoGetDns has failed!\n"))",
                    R"(varoUpdateDnsWS(2, {domain="example.org" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(ResolverDomains, DomainIsWrittenWithWhatAFailedReadLeft) {
    varoLib_s_dns left{};
    left.ip_pri = serverB;
    platform.dnsLeftByFailure = left;
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre("exclusiveLock", "varoGetDnsWS(2) -> 5",
                    R"(syslog(3, "[networkBLE]: setDomainname: varoGetDns has failed!\n"))",
                    R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.2 sec=0.0.0.0}) -> 0)",
                    "~exclusiveLock"));
}

TEST_F(ResolverDomains, DomainThatCannotBeWrittenIsReported) {
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

TEST_F(ResolverDomains, DomainIsWrittenToTheManagementConfigurationWhateverSourceTheReadReports) {
    platform.reportedSource = 1;
    EXPECT_EQ(networkSetDomainname("example.org"), 0);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "exclusiveLock", readV4AsOfALease,
            R"(varoUpdateDnsWS(2, {domain="example.org" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
            "~exclusiveLock"));
}

TEST_F(ResolverDomains, LongDomainIsStoredCutTo255AndReadCutTo99) {
    const std::string name = lettersOf(300);
    const std::string stored = recordV4(name.substr(0, 255), "192.0.2.1", "192.0.2.2");
    EXPECT_EQ(networkSetDomainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns[2].domain, name.substr(0, 255));
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(readV4, "varoUpdateDnsWS(2, " + stored + ") -> 0")));

    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), 0);
    EXPECT_EQ(buffer.content(), name.substr(0, 99));
    EXPECT_TRUE(buffer.isIntactBehind());
    EXPECT_THAT(journal(), ElementsAreArray(sharing("varoGetDnsWS(2) -> 0 2 " + stored)));
}

TEST_F(ResolverDomains, DomainOf255IsStoredWhole) {
    const std::string name = lettersOf(255);
    EXPECT_EQ(networkSetDomainname(name.c_str()), 0);
    EXPECT_EQ(platform.dns[2].domain, name);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               readV4, "varoUpdateDnsWS(2, " +
                                           recordV4(name, "192.0.2.1", "192.0.2.2") + ") -> 0")));
}

TEST_F(ResolverDomains, EmptyDomainClearsIt) {
    EXPECT_EQ(networkSetDomainname(""), 0);
    EXPECT_STREQ(platform.dns[2].domain, "");
    EXPECT_EQ(platform.dns[2].ip_pri, serverA);
    EXPECT_THAT(journal(),
                ElementsAre("exclusiveLock", readV4,
                            R"(varoUpdateDnsWS(2, {domain="" pri=192.0.2.1 sec=192.0.2.2}) -> 0)",
                            "~exclusiveLock"));
}

TEST_F(ResolverDomains, DomainIsReadFromTheManagementConfiguration) {
    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), 0);
    EXPECT_EQ(buffer.content(), "example.net");
    EXPECT_EQ(buffer.text[99], '\0');
    EXPECT_EQ(buffer.text[98], '#');
    EXPECT_TRUE(buffer.isIntactBehind());
    EXPECT_THAT(journal(), ElementsAre("sharedLock", readV4, "~sharedLock"));
}

TEST_F(ResolverDomains, DomainOf99IsReadWholeAndOneOf100Cut) {
    for (const std::size_t length : {99, 100}) {
        const std::string name = lettersOf(length);
        put(platform.dns[2].domain, name);
        Buffer<100> buffer;
        EXPECT_EQ(networkGetDomainname(buffer.text), 0);
        EXPECT_EQ(buffer.content(), name.substr(0, 99));
        EXPECT_TRUE(buffer.isIntactBehind());
        EXPECT_THAT(journal(), ElementsAreArray(sharing("varoGetDnsWS(2) -> 0 2 " +
                                                        recordV4(name, "192.0.2.1", "192.0.2.2"))));
    }
}

TEST_F(ResolverDomains, DomainBufferThatIsNullIsReported) {
    EXPECT_EQ(networkGetDomainname(nullptr), -1);
    EXPECT_THAT(
        journal(),
        ElementsAre(
            "sharedLock",
            R"(syslog(3, "[networkBLE]: getDomainname failed! One of input args is NULL. domainname: (nil)\n"))",
            "~sharedLock"));
}

TEST_F(ResolverDomains, DomainThatCannotBeReadIsReported) {
    platform.fail("varoGetDnsWS", 5);
    Buffer<100> buffer;
    EXPECT_EQ(networkGetDomainname(buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_THAT(journal(),
                ElementsAre("sharedLock", "varoGetDnsWS(2) -> 5",
                            R"(syslog(3, "[networkBLE]: getDomainname: varoGetDns has failed!\n"))",
                            "~sharedLock"));
}

TEST_F(ResolverDomains, DomainWithSourceIsWhatVaroLibChooses) {
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

TEST_F(ResolverDomains, DomainWithSourceOf99IsReadWholeAndALongerOneCut) {
    platform.sourceInForce = 1;
    for (const std::size_t length : {99, 100, 255}) {
        const std::string name = lettersOf(length);
        put(platform.dns[1].domain, name);
        Buffer<100> buffer;
        int source = 77;
        EXPECT_EQ(networkGetDomainnameWS(&source, buffer.text), 0);
        EXPECT_EQ(buffer.content(), name.substr(0, 99));
        EXPECT_EQ(buffer.text[99], '\0');
        EXPECT_TRUE(buffer.isIntactBehind());
        EXPECT_EQ(source, 1);
        EXPECT_THAT(journal(),
                    ElementsAreArray(sharing("varoGetDnsWS(0) -> 0 1 " +
                                             recordV4(name, "198.51.100.1", "0.0.0.0"))));
    }
}

TEST_F(ResolverDomains, DomainWithSourceReportsANullBufferByTheOtherGettersText) {
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

TEST_F(ResolverDomains, DomainWithSourceThatCannotBeReadIsReported) {
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

}  // namespace
