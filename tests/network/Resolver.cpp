// Name servers of both families.

#include "network/ResolverTest.h"

#include <csignal>
#include <ostream>

namespace {

using testing::ElementsAre;

using Resolver = ResolverTest;

/// The record of a family with other servers.
std::string withServers(const ResolverFamily& family, const std::string& primary,
                        const std::string& secondary) {
    return family.record(family.domain, primary, secondary);
}

// Setting the IPv4 servers.

struct ServerCase {
    unsigned int primary;
    unsigned int secondary;
    const char* storedPrimary;
    const char* storedSecondary;
};

// A secondary equal to the primary is dropped; a primary may be missing.
TEST_F(Resolver, SettingTheServersKeepsTheDomain) {
    for (const auto& [primary, secondary, storedPrimary, storedSecondary] :
         {ServerCase{serverB, serverA, "192.0.2.2", "192.0.2.1"},
          {serverB, serverB, "192.0.2.2", "0.0.0.0"},
          {0, serverB, "0.0.0.0", "192.0.2.2"}}) {
        platform.dns[2].ip_pri = serverA;
        platform.dns[2].ip_sec = serverB;
        EXPECT_EQ(networkSetDnsServers(primary, secondary), 0);
        EXPECT_JOURNAL(
            exclusively(v4.ownRead(), v4.written(withServers(v4, storedPrimary, storedSecondary))));
    }
}

TEST_F(Resolver, ServersAreWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    EXPECT_EQ(networkSetDnsServers(serverA, serverB), 0);
    EXPECT_JOURNAL(exclusively(v4.readFailed(), error("setDnsServers: varoGetDns has failed!"),
                               v4.written(recordV4("", "192.0.2.1", "192.0.2.2"))));
}

TEST_F(Resolver, ServersAreWrittenToTheSourceThatTheReadLeft) {
    platform.reportedSource = 1;
    EXPECT_EQ(networkSetDnsServers(serverA, serverB), 0);
    EXPECT_JOURNAL(
        exclusively(v4.ownRead(1), v4.written(withServers(v4, "192.0.2.1", "192.0.2.2"), 0, 1)));
}

TEST_F(Resolver, ServersThatCannotBeWrittenAreReportedAsSignedDecimals) {
    platform.fail("varoUpdateDnsWS", 6);
    EXPECT_EQ(networkSetDnsServers(serverB, 1), -1);
    EXPECT_JOURNAL(exclusively(v4.ownRead(), v4.written(withServers(v4, "192.0.2.2", "0.0.0.1"), 6),
                               error("setDnsServers: varoUpdateDns has failed (dnsSource=2), "
                                     "dns.ip_pri=-1073741310, dns.ip_sec=1)! Return value: 6")));
}

// Setting the IPv6 servers.

TEST_F(Resolver, SettingTheIpv6ServersKeepsTheDomain) {
    const std::string fitting = lettersOf(255);
    const std::string other(255, 'f');
    std::string before = v6.withDomain(v6.domain);
    // They may be equal or empty.
    for (const auto& [primary, secondary] :
         {std::pair<std::string, std::string>{"2001:db8::a", "2001:db8::b"},
          {"2001:db8::a", "2001:db8::a"},
          {"", ""},
          {fitting, other}}) {
        EXPECT_EQ(networkSetIPv6DnsServers(primary.c_str(), secondary.c_str()), 0);
        EXPECT_EQ(platform.dns6[2].ipv6_pri, primary);
        EXPECT_EQ(platform.dns6[2].ipv6_sec, secondary);
        const std::string stored = withServers(v6, primary, secondary);
        EXPECT_JOURNAL(exclusively(v6.read(2, 2, before), v6.written(stored)));
        before = stored;
    }
}

TEST_F(Resolver, Ipv6ServersAreWrittenEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", ""), 0);
    EXPECT_JOURNAL(exclusively(v6.readFailed(), error("setIPv6DnsServers: varoGetDns6 has failed!"),
                               v6.written(recordV6("", "2001:db8::a", ""))));
}

TEST_F(Resolver, Ipv6ServersThatCannotBeWrittenAreReportedWithTheSourceThatTheReadLeft) {
    platform.reportedSource = 1;
    platform.fail("varoUpdateDns6", 6);
    EXPECT_EQ(networkSetIPv6DnsServers("2001:db8::a", "2001:db8::b"), -1);
    EXPECT_JOURNAL(exclusively(
        v6.ownRead(1), v6.written(withServers(v6, "2001:db8::a", "2001:db8::b"), 6, 1),
        error("setIPv6DnsServers: varoUpdateDns6 has failed (dnsSource=1), "
              "dns.ipv6_pri=2001:db8::a, dnsipv6.ip_sec=2001:db8::b)! Return value: 6")));
}

using ResolverDeathTest = ResolverTest;

TEST_F(ResolverDeathTest, Ipv6ServerTextThatDoesNotFitEndsTheProcess) {
    const std::string text(256, 'f');
    EXPECT_EXIT(networkSetIPv6DnsServers(text.c_str(), ""), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(networkSetIPv6DnsServers("", text.c_str()), testing::KilledBySignal(SIGABRT), "");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

// Deleting the servers.

struct ServerDeletion {
    const ResolverFamily& family;
    int (*make)();
    const char* unreadReported;
    const char* failureReported;
};

void PrintTo(const ServerDeletion& deletion, std::ostream* out) { *out << deletion.family.name; }

const ServerDeletion deletions[] = {
    {v4, networkDeleteDnsServers, "deleteDnsServers: varoGetDns has failed!",
     "deleteDnsServers: varoUpdateDns has failed! Return value: 6"},
    {v6, networkDeleteIPv6DnsServers, "deleteIPv6DnsServers: varoGetDns6 has failed!",
     "deleteIPv6DnsServers: varoUpdateDns6 has failed! Return value: 6"},
};

class Deletion : public ResolverTest, public testing::WithParamInterface<ServerDeletion> {
protected:
    const ResolverFamily& family = GetParam().family;
};

INSTANTIATE_TEST_SUITE_P(Resolver, Deletion, testing::ValuesIn(deletions),
                         [](const auto& test) { return std::string(test.param.family.name); });

TEST_P(Deletion, KeepsTheDomainAndWritesToTheManagementConfigurationWhateverTheReadReports) {
    for (const int reported : {2, 1}) {
        platform.dns[2] = {"example.net", serverA, serverB};
        platform.dns6[2] = {"six.example", "2001:db8::1", "2001:db8::2"};
        platform.reportedSource = reported;
        EXPECT_EQ(GetParam().make(), 0);
        EXPECT_JOURNAL(
            exclusively(family.ownRead(reported), family.written(family.withoutServers())));
    }
}

TEST_P(Deletion, WritesEvenIfTheRecordCannotBeRead) {
    platform.fail(family.readCall, 5);
    EXPECT_EQ(GetParam().make(), 0);
    EXPECT_JOURNAL(exclusively(family.readFailed(), error(GetParam().unreadReported),
                               family.written(family.empty())));
}

TEST_P(Deletion, ReportsServersThatCannotBeDeleted) {
    platform.fail(family.updateCall, 6);
    for (const int reported : {2, 1}) {
        platform.reportedSource = reported;
        EXPECT_EQ(GetParam().make(), -1);
        EXPECT_JOURNAL(exclusively(family.ownRead(reported),
                                   family.written(family.withoutServers(), 6),
                                   error(GetParam().failureReported)));
    }
}

// Reading the servers.

TEST_F(Resolver, ServersAreReadFromTheManagementConfiguration) {
    platform.sourceInForce = 1;
    unsigned int primary = 7;
    unsigned int secondary = 8;
    EXPECT_EQ(networkGetDnsServers(&primary, &secondary), 0);
    EXPECT_EQ(primary, serverA);
    EXPECT_EQ(secondary, serverB);
    EXPECT_JOURNAL(sharing(v4.ownRead()));
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
    EXPECT_JOURNAL(sharing(v4.read(0, 1, v4.leased(v4.leasedDomain))));
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
    EXPECT_JOURNAL(sharing(v6.read(0, 1, v6.leased(v6.leasedDomain))));
}

TEST_F(Resolver, Ipv6ServersAreReadCutTo98) {
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
    EXPECT_JOURNAL(sharing(v6.read(0, 2, withServers(v6, fitting, tooLong))));
}

/// Where a getter of servers is to put what it hands out.
class ServerPlaces : public ResolverTest {
protected:
    void TearDown() override {
        EXPECT_EQ(source, 77);
        EXPECT_THAT(numbers, ElementsAre(7, 8));
        EXPECT_TRUE(texts[0].isUntouched());
        EXPECT_TRUE(texts[1].isUntouched());
        ResolverTest::TearDown();
    }

    /// A place, or none: there is a bit for each.
    template <class Value>
    static Value* given(unsigned int bits, unsigned int bit, Value* place) {
        return (bits & bit) != 0 ? place : nullptr;
    }

    int source = 77;
    unsigned int numbers[2] = {7, 8};
    Buffer<99> texts[2];
};

TEST_F(ServerPlaces, NullInPlaceOfAServerIsReported) {
    for (unsigned int bits = 0; bits < 3; ++bits) {
        unsigned int* const primary = given(bits, 1, &numbers[0]);
        unsigned int* const secondary = given(bits, 2, &numbers[1]);
        EXPECT_EQ(networkGetDnsServers(primary, secondary), -1);
        EXPECT_JOURNAL(
            sharing(error("getDnsServers failed! One of input args is NULL. "
                          "primary: " +
                          shown(primary) + ", secondary: " + shown(secondary))));
    }
}

TEST_F(ServerPlaces, NullInPlaceOfSourceOrServerIsReported) {
    for (unsigned int bits = 0; bits < 7; ++bits) {
        int* const sourcePlace = given(bits, 1, &source);
        const auto reported = [&](const std::string& failed, const void* primary,
                                  const void* secondary) {
            return sharing(error(
                failed + " failed! One of input args is NULL. dnsSource: " + shown(sourcePlace) +
                ", primary: " + shown(primary) + ", secondary: " + shown(secondary)));
        };
        unsigned int* const number = given(bits, 2, &numbers[0]);
        unsigned int* const otherNumber = given(bits, 4, &numbers[1]);
        EXPECT_EQ(networkGetDnsServersWS(sourcePlace, number, otherNumber), -1);
        EXPECT_JOURNAL(reported("getDnsServers", number, otherNumber));
        char* const text = given(bits, 2, texts[0].text);
        char* const otherText = given(bits, 4, texts[1].text);
        EXPECT_EQ(networkGetIPv6DnsServers(sourcePlace, text, otherText), -1);
        EXPECT_JOURNAL(reported("getIPv6DnsServers", text, otherText));
    }
}

// The IPv4 getters say it by the deletion's text.
TEST_F(ServerPlaces, StayAsTheyAreIfTheServersCannotBeRead) {
    platform.fail("varoGetDnsWS", 5);
    platform.fail("varoGetDns6", 5);
    EXPECT_EQ(networkGetDnsServers(&numbers[0], &numbers[1]), -1);
    EXPECT_EQ(networkGetDnsServersWS(&source, &numbers[0], &numbers[1]), -1);
    EXPECT_EQ(networkGetIPv6DnsServers(&source, texts[0].text, texts[1].text), -1);
    EXPECT_JOURNAL(
        sharing(v4.readFailed(2), error("deleteDnsServers: varoGetDns has failed!")),
        sharing(v4.readFailed(0), error("deleteDnsServers: varoGetDns has failed!")),
        sharing(v6.readFailed(0), error("getIPv6DnsServersWS: varoGetDns6 has failed!")));
}

}  // namespace
