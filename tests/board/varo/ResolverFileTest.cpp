#include "board/varo/settings/resolverFile.h"
#include "tests/board/varo/VaroTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace varotest;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string heading = "# Written by the configuration library; changes made here are lost.\n";

varoLib_s_dns dns(const std::string& domain, std::uint32_t primary = 0,
                  std::uint32_t secondary = 0) {
    varoLib_s_dns record{};
    setText(record.domain, domain);
    record.ip_pri = primary;
    record.ip_sec = secondary;
    return record;
}

varoLib_s_dns6 dns6(const std::string& domain, const std::string& primary = {},
                    const std::string& secondary = {}) {
    varoLib_s_dns6 record{};
    setText(record.domain, domain);
    setText(record.ipv6_pri, primary);
    setText(record.ipv6_sec, secondary);
    return record;
}

std::string text(const varoLib_s_dns& ipv4, const varoLib_s_dns6& ipv6) {
    const varo::ResolverText made = varo::resolverText(ipv4, ipv6);
    EXPECT_THAT(made.leftOut, IsEmpty());
    return made.content;
}

TEST(ResolverText, IsAHeadingWhenNothingIsSet) { EXPECT_EQ(text(dns(""), dns6("")), heading); }

TEST(ResolverText, NamesPrimaryServersOfBothFamiliesFirst) {
    EXPECT_EQ(text(dns("four.example.net", 0xC0000201, 0xC0000202),
                   dns6("six.example.net", "2001:db8::1", "2001:db8::2")),
              heading +
                  "search four.example.net six.example.net\n"
                  "nameserver 192.0.2.1\n"
                  "nameserver 2001:db8::1\n"
                  "nameserver 192.0.2.2\n"
                  "nameserver 2001:db8::2\n");
}

TEST(ResolverText, NamesADomainOfBothFamiliesOnce) {
    EXPECT_EQ(text(dns("example.net"), dns6("example.net")), heading + "search example.net\n");
}

TEST(ResolverText, NamesASecondaryServerWithoutAPrimaryOne) {
    EXPECT_EQ(text(dns("", 0, 0x7F000001), dns6("")), heading + "nameserver 127.0.0.1\n");
}

TEST(ResolverText, KeepsTheZoneOfALinkLocalServer) {
    EXPECT_EQ(text(dns(""), dns6("", "fe80::1%mng0")), heading + "nameserver fe80::1%mng0\n");
}

TEST(ResolverText, LeavesOutADomainThatWouldAddALine) {
    for (const std::string domain :
         {"example.net\nnameserver 203.0.113.1", "two words", "tab\t", "return\r", "\x7f"}) {
        const auto made = varo::resolverText(dns(domain, 0xC0000201), dns6(""));
        EXPECT_EQ(made.content, heading + "nameserver 192.0.2.1\n");
        EXPECT_EQ(made.leftOut.size(), 1U) << domain;
    }
    EXPECT_THAT(varo::resolverText(dns("a\nb"), dns6("")).leftOut,
                ElementsAre("domain \"a\\x0ab\" is not one word"));
}

TEST(ResolverText, KeepsADomainWithBytesAboveAscii) {
    EXPECT_EQ(text(dns("caf\xc3\xa9.example"), dns6("")), heading + "search caf\xc3\xa9.example\n");
}

TEST(ResolverText, LeavesOutServersThatAreNoIpv6Addresses) {
    for (const std::string server :
         {"192.0.2.1", "ns.example.net", "2001:db8::1\nsearch evil.example", "fe80::1%",
          "fe80::1%a b", "fe80::1%sixteen-letters-", "%mng0"}) {
        const auto made = varo::resolverText(dns("", 0xC0000201), dns6("", server));
        EXPECT_EQ(made.content, heading + "nameserver 192.0.2.1\n");
        EXPECT_EQ(made.leftOut.size(), 1U) << server;
    }
}

class ResolverFile : public ClosedVaroTest {
protected:
    ResolverFile() {
        resolverFile = directory.path() / "etc" / "resolv.conf";
        std::filesystem::create_directory(resolverFile.parent_path());
        configure();
    }

    void open() { ASSERT_EQ(varoLibInit(), varo::success); }
    std::string content() const { return readFile(resolverFile); }

    static int update(int source, varoLib_s_dns record) { return varoUpdateDnsWS(source, &record); }
    static int update(int source, varoLib_s_dns6 record) { return varoUpdateDns6(source, &record); }
};

TEST_F(ResolverFile, HoldsTheValuesAfterAnUpdate) {
    open();
    EXPECT_EQ(content(), heading);
    EXPECT_EQ(update(2, dns("example.net", 0xC0000201)), varo::success);
    EXPECT_EQ(content(), heading + "search example.net\nnameserver 192.0.2.1\n");
    EXPECT_EQ(update(2, dns6("", "2001:db8::1")), varo::success);
    EXPECT_EQ(content(),
              heading + "search example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
}

TEST_F(ResolverFile, HoldsTheStoredValuesOnceTheLibraryIsOpen) {
    open();
    EXPECT_EQ(update(2, dns("example.net")), varo::success);
    varoLibDestroy();
    writeFile(resolverFile, "nameserver 203.0.113.1\n");
    open();
    EXPECT_EQ(content(), heading + "search example.net\n");
}

TEST_F(ResolverFile, HoldsTheSourceInForceOfEachFamily) {
    open();
    EXPECT_EQ(update(1, dns("dhcp.example.net", 0xC0000201)), varo::success);
    EXPECT_EQ(update(1, dns6("", "2001:db8::1")), varo::success);
    EXPECT_EQ(content(),
              heading + "search dhcp.example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
    EXPECT_EQ(update(2, dns("cli.example.net")), varo::success);
    EXPECT_EQ(content(), heading + "search cli.example.net\nnameserver 2001:db8::1\n");
    EXPECT_EQ(update(2, dns("")), varo::success);
    EXPECT_EQ(content(),
              heading + "search dhcp.example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
}

TEST_F(ResolverFile, SaysWhichStoredValueHasNoPlaceInIt) {
    open();
    EXPECT_EQ(update(2, dns6("", "not an address")), varo::success);
    EXPECT_EQ(content(), heading);
    EXPECT_THAT(log.lines(), ElementsAre("3 resolver: left out of " + resolverFile.string() +
                                         ": server \"not an address\" is not an IPv6 address"));
}

TEST_F(ResolverFile, ThatCannotBeWrittenIsAnErrorWhileTheValuesAreStored) {
    open();
    std::filesystem::remove_all(resolverFile.parent_path());
    EXPECT_EQ(update(2, dns("example.net")), varo::applyFailed);
    EXPECT_THAT(
        log.lines(),
        ElementsAre("3 varoUpdateDnsWS: the resolver settings are stored, but not in force: "
                    "cannot create " +
                    resolverFile.string() + ".new: No such file or directory"));
    EXPECT_EQ(sql(file, "SELECT domain FROM dns"), "example.net");
}

TEST_F(ResolverFile, ThatCannotBeWrittenIsReportedByInitWhichOpensNevertheless) {
    std::filesystem::remove_all(resolverFile.parent_path());
    EXPECT_EQ(varoLibInit(), varo::applyFailed);
    EXPECT_EQ(log.lines().size(), 1U);
    varoLib_s_dns record{};
    int source = 2;
    EXPECT_EQ(varoGetDnsWS(&source, &record), varo::success);
    std::filesystem::create_directory(resolverFile.parent_path());
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(content(), heading);
}

TEST_F(ResolverFile, IsNotTouchedWhenTheValuesCannotBeStored) {
    open();
    EXPECT_EQ(update(2, dns("example.net")), varo::success);
    varoLib_s_dns unterminated{};
    std::memset(unterminated.domain, 'd', sizeof unterminated.domain);
    EXPECT_EQ(varoUpdateDnsWS(2, &unterminated), varo::invalidValue);
    EXPECT_EQ(content(), heading + "search example.net\n");
}

}  // namespace
