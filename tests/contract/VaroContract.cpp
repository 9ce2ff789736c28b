// What every implementation of the configuration library keeps.

#include "contract/Environment.h"
#include "support/matchers.h"
#include "support/setText.h"
#include "varo/varoLib.h"

#include <netinet/in.h>

#include <cstring>
#include <string>

namespace {

constexpr int anySource = 0;
constexpr int dhcpSource = 1;
constexpr int cliSource = 2;

class VaroContract : public testing::Test {
protected:
    /// What a read of the source returns, and in `source` whose it is.
    static varoLib_s_dns dnsOf(int& source) {
        varoLib_s_dns dns{};
        EXPECT_EQ(varoGetDnsWS(&source, &dns), 0);
        return dns;
    }
    static varoLib_s_dns6 dns6Of(int& source) {
        varoLib_s_dns6 dns{};
        EXPECT_EQ(varoGetDns6(&source, &dns), 0);
        return dns;
    }

    static void setDns(int source, const std::string& domain, unsigned int primary) {
        varoLib_s_dns dns{};
        setText(dns.domain, domain);
        dns.ip_pri = primary;
        ASSERT_EQ(varoUpdateDnsWS(source, &dns), 0);
    }
    static void setDns6(int source, const std::string& domain, const std::string& primary) {
        varoLib_s_dns6 dns{};
        setText(dns.domain, domain);
        setText(dns.ipv6_pri, primary);
        ASSERT_EQ(varoUpdateDns6(source, &dns), 0);
    }

    Environment environment;
};

TEST_F(VaroContract, CallsBeforeInitialisationAreAnswered) {
    varoLib_s_internalConfig config{};
    EXPECT_EQ(varoGetInternalConfig(&config), 0);
    int source = cliSource;
    dnsOf(source);
    EXPECT_EQ(varoLibInit(), 0);
}

TEST_F(VaroContract, SeverityIsThreeUntilItIsChanged) {
    ASSERT_EQ(varoLibInit(), 0);
    varoLib_s_internalConfig config{};
    EXPECT_EQ(varoGetInternalConfig(&config), 0);
    EXPECT_EQ(config.severity, 3);
    config.severity = 5;
    EXPECT_EQ(varoUpdateInternalConfig(&config, 5), 0);
    config = {};
    EXPECT_EQ(varoGetInternalConfig(&config), 0);
    EXPECT_EQ(config.severity, 5);
}

TEST_F(VaroContract, SeverityBesideTheRecordIsTheOneThatCounts) {
    varoLib_s_internalConfig config{7};
    EXPECT_EQ(varoUpdateInternalConfig(&config, 4), 0);
    EXPECT_EQ(varoGetInternalConfig(&config), 0);
    EXPECT_EQ(config.severity, 4);
}

TEST_F(VaroContract, ResolverIsEmptyAtFirst) {
    for (int asked : {anySource, dhcpSource, cliSource}) {
        int source = asked;
        const varoLib_s_dns dns = dnsOf(source);
        EXPECT_STREQ(dns.domain, "");
        EXPECT_EQ(dns.ip_pri, 0U);
        EXPECT_EQ(dns.ip_sec, 0U);
        EXPECT_EQ(source, asked == anySource ? cliSource : asked);
    }
}

TEST_F(VaroContract, ResolverReadsBackAsWritten) {
    varoLib_s_dns written{};
    setText(written.domain, std::string(255, 'd'));
    written.ip_pri = 0xffffffff;
    written.ip_sec = 1;
    ASSERT_EQ(varoUpdateDnsWS(cliSource, &written), 0);
    int source = cliSource;
    const varoLib_s_dns read = dnsOf(source);
    EXPECT_STREQ(read.domain, written.domain);
    EXPECT_EQ(read.ip_pri, 0xffffffffU);
    EXPECT_EQ(read.ip_sec, 1U);
    EXPECT_EQ(source, cliSource);
}

TEST_F(VaroContract, SourcesAreKeptApart) {
    setDns(cliSource, "cli.example", 1);
    setDns(dhcpSource, "dhcp.example", 2);
    setDns6(cliSource, "cli6.example", "2001:db8::1");
    setDns6(dhcpSource, "dhcp6.example", "2001:db8::2");
    int source = cliSource;
    EXPECT_STREQ(dnsOf(source).domain, "cli.example");
    EXPECT_STREQ(dns6Of(source).domain, "cli6.example");
    source = dhcpSource;
    EXPECT_STREQ(dnsOf(source).domain, "dhcp.example");
    EXPECT_STREQ(dns6Of(source).ipv6_pri, "2001:db8::2");
}

TEST_F(VaroContract, ManagementConfigurationIsChosenWhenItNamesAnything) {
    setDns(dhcpSource, "dhcp.example", 2);
    setDns(cliSource, "", 1);
    int source = anySource;
    EXPECT_EQ(dnsOf(source).ip_pri, 1U);
    EXPECT_EQ(source, cliSource);
}

TEST_F(VaroContract, LeaseIsChosenWhenTheManagementConfigurationNamesNothing) {
    setDns(dhcpSource, "dhcp.example", 2);
    setDns6(dhcpSource, "", "2001:db8::2");
    int source = anySource;
    EXPECT_STREQ(dnsOf(source).domain, "dhcp.example");
    EXPECT_EQ(source, dhcpSource);
    source = anySource;
    EXPECT_STREQ(dns6Of(source).ipv6_pri, "2001:db8::2");
    EXPECT_EQ(source, dhcpSource);
}

TEST_F(VaroContract, OtherSourcesAreRefused) {
    varoLib_s_dns dns{};
    varoLib_s_dns6 dns6{};
    for (int source : {-1, 0, 3, 2147483647}) {
        EXPECT_NE(varoUpdateDnsWS(source, &dns), 0) << source;
        EXPECT_NE(varoUpdateDns6(source, &dns6), 0) << source;
    }
    for (int source : {-1, 3, 2147483647}) {
        EXPECT_NE(varoGetDnsWS(&source, &dns), 0) << source;
        EXPECT_NE(varoGetDns6(&source, &dns6), 0) << source;
    }
}

TEST_F(VaroContract, NullPointersAreRefused) {
    int source = cliSource;
    varoLib_s_dns dns{};
    varoLib_s_dns6 dns6{};
    EXPECT_NE(varoGetDnsWS(nullptr, &dns), 0);
    EXPECT_NE(varoGetDnsWS(&source, nullptr), 0);
    EXPECT_NE(varoUpdateDnsWS(cliSource, nullptr), 0);
    EXPECT_NE(varoGetDns6(nullptr, &dns6), 0);
    EXPECT_NE(varoGetDns6(&source, nullptr), 0);
    EXPECT_NE(varoUpdateDns6(cliSource, nullptr), 0);
    EXPECT_NE(varoGetInternalConfig(nullptr), 0);
    EXPECT_NE(varoUpdateInternalConfig(nullptr, 3), 0);
    EXPECT_NE(varoGetInterface(nullptr), 0);
}

TEST_F(VaroContract, TextsThatDoNotEndAreRefusedAndChangeNothing) {
    setDns(cliSource, "before.example", 1);
    varoLib_s_dns dns{};
    std::memset(dns.domain, 'x', sizeof dns.domain);
    EXPECT_NE(varoUpdateDnsWS(cliSource, &dns), 0);
    int source = cliSource;
    EXPECT_STREQ(dnsOf(source).domain, "before.example");

    varoLib_s_dns6 dns6{};
    std::memset(dns6.ipv6_sec, 'x', sizeof dns6.ipv6_sec);
    EXPECT_NE(varoUpdateDns6(cliSource, &dns6), 0);
    EXPECT_STREQ(dns6Of(source).ipv6_sec, "");
}

TEST_F(VaroContract, InterfaceIsReadInNetworkByteOrder) {
    const Environment::Interface known = Environment::interface();
    varoLib_s_interface interface{};
    setText(interface.name, known.name);
    ASSERT_EQ(varoGetInterface(&interface), 0);
    EXPECT_EQ(ntohl(interface.ipAddr), known.address);
    EXPECT_EQ(ntohl(interface.netmask), known.netmask);
}

TEST_F(VaroContract, InterfaceThatIsNotThereCannotBeRead) {
    varoLib_s_interface interface{};
    setText(interface.name, "nosuchif0");
    EXPECT_NE(varoGetInterface(&interface), 0);
    std::memset(interface.name, 'x', sizeof interface.name);
    EXPECT_NE(varoGetInterface(&interface), 0);
}

}  // namespace
