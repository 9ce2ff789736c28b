// What failing reads leave behind: a change goes on with it, a getter hands out nothing of it.

#include "network/ResolverTest.h"

#include <ostream>

namespace {

constexpr unsigned int serverC = 0xc0000203;  // 192.0.2.3
constexpr unsigned int serverD = 0xc0000204;  // 192.0.2.4

/// A change of a record, and what it leads to when the read fails.
struct Change {
    const char* operation;
    int (*make)();
    const char* read;         ///< call
    const char* readFailed;   ///< message, without the name of the operation
    std::string write;        ///< call, of the record that the read left, to the source it left
    std::string writeFailed;  ///< message of a failure with 6, likewise
};

void PrintTo(const Change& change, std::ostream* out) { *out << change.operation; }

const Change changes[] = {
    {"setDomainname", [] { return networkSetDomainname("example.org"); }, "varoGetDnsWS",
     "varoGetDns has failed!",
     "varoUpdateDnsWS(2, " + recordV4("example.org", "192.0.2.3", "192.0.2.4") + ")",
     "varoUpdateDns has failed! Return value: 6"},
    {"setDnsServers", [] { return networkSetDnsServers(serverA, serverB); }, "varoGetDnsWS",
     "varoGetDns has failed!",
     "varoUpdateDnsWS(1, " + recordV4("left.example", "192.0.2.1", "192.0.2.2") + ")",
     "varoUpdateDns has failed (dnsSource=1), dns.ip_pri=-1073741311, "
     "dns.ip_sec=-1073741310)! Return value: 6"},
    {"deleteDnsServers", networkDeleteDnsServers, "varoGetDnsWS", "varoGetDns has failed!",
     "varoUpdateDnsWS(2, " + recordV4("left.example", "0.0.0.0", "0.0.0.0") + ")",
     "varoUpdateDns has failed! Return value: 6"},
    {"setIPv6Domainname", [] { return networkSetIPv6Domainname("example.org"); }, "varoGetDns6",
     "varoGetDns6 has failed!",
     "varoUpdateDns6(2, " + recordV6("example.org", "2001:db8::3", "2001:db8::4") + ")",
     "varoUpdateDns6 has failed! Return value: 6"},
    {"setIPv6DnsServers", [] { return networkSetIPv6DnsServers("2001:db8::a", "2001:db8::b"); },
     "varoGetDns6", "varoGetDns6 has failed!",
     "varoUpdateDns6(1, " + recordV6("left6.example", "2001:db8::a", "2001:db8::b") + ")",
     "varoUpdateDns6 has failed (dnsSource=1), dns.ipv6_pri=2001:db8::a, "
     "dnsipv6.ip_sec=2001:db8::b)! Return value: 6"},
    {"deleteIPv6DnsServers", networkDeleteIPv6DnsServers, "varoGetDns6", "varoGetDns6 has failed!",
     "varoUpdateDns6(2, " + recordV6("left6.example", "", "") + ")",
     "varoUpdateDns6 has failed! Return value: 6"},
};

/// Reads fail, and leave records and a source that are nobody's.
class ResolverFailedReads : public ResolverTest {
protected:
    ResolverFailedReads() {
        platform.dnsLeftByFailure = {"left.example", serverC, serverD};
        platform.dns6LeftByFailure = {"left6.example", "2001:db8::3", "2001:db8::4"};
        platform.sourceLeftByFailure = 1;
        platform.fail("varoGetDnsWS", 5);
        platform.fail("varoGetDns6", 5);
    }

    /// What comes before the write.
    static Entries failedRead(const Change& change) {
        return {std::string(change.read) + "(2) -> 5",
                error(std::string(change.operation) + ": " + change.readFailed)};
    }
};

class ResolverChange : public ResolverFailedReads, public testing::WithParamInterface<Change> {};

INSTANTIATE_TEST_SUITE_P(, ResolverChange, testing::ValuesIn(changes),
                         [](const auto& test) { return std::string(test.param.operation); });

TEST_P(ResolverChange, GoesOnWithWhatAFailedReadLeft) {
    EXPECT_EQ(GetParam().make(), 0);
    EXPECT_JOURNAL(exclusively(failedRead(GetParam()), GetParam().write + " -> 0"));
}

TEST_P(ResolverChange, ReportsAFailedReadAndAFailedWrite) {
    platform.fail("varoUpdateDnsWS", 6);
    platform.fail("varoUpdateDns6", 6);
    EXPECT_EQ(GetParam().make(), -1);
    EXPECT_JOURNAL(
        exclusively(failedRead(GetParam()), GetParam().write + " -> 6",
                    error(std::string(GetParam().operation) + ": " + GetParam().writeFailed)));
}

TEST_F(ResolverFailedReads, NothingThatWasLeftIsHandedOut) {
    Buffer<100> domain;
    Buffer<99> texts[2];
    unsigned int servers[2] = {7, 8};
    int source = 77;
    EXPECT_EQ(networkGetDomainname(domain.text), -1);
    EXPECT_EQ(networkGetDomainnameWS(&source, domain.text), -1);
    EXPECT_EQ(networkGetDnsServers(&servers[0], &servers[1]), -1);
    EXPECT_EQ(networkGetDnsServersWS(&source, &servers[0], &servers[1]), -1);
    EXPECT_EQ(networkGetIPv6Domainname(&source, domain.text), -1);
    EXPECT_EQ(networkGetIPv6DnsServers(&source, texts[0].text, texts[1].text), -1);
    EXPECT_TRUE(domain.isUntouched());
    EXPECT_TRUE(texts[0].isUntouched());
    EXPECT_TRUE(texts[1].isUntouched());
    EXPECT_THAT(servers, testing::ElementsAre(7, 8));
    EXPECT_EQ(source, 77);
    EXPECT_JOURNAL(
        sharing("varoGetDnsWS(2) -> 5", error("getDomainname: varoGetDns has failed!")),
        sharing("varoGetDnsWS(0) -> 5", error("getDomainnameWS: varoGetDnsWS has failed!")),
        sharing("varoGetDnsWS(2) -> 5", error("deleteDnsServers: varoGetDns has failed!")),
        sharing("varoGetDnsWS(0) -> 5", error("deleteDnsServers: varoGetDns has failed!")),
        sharing("varoGetDns6(0) -> 5", error("getIPv6Domainname: varoGetDns6 has failed!")),
        sharing("varoGetDns6(0) -> 5", error("getIPv6DnsServersWS: varoGetDns6 has failed!")));
}

}  // namespace
