#include "board/varo/settings/resolverFile.h"
#include "tests/board/varo/VaroTest.h"

namespace {

using namespace varotest;

const std::string heading = "# Written by the configuration library; changes made here are lost.\n";

std::string text(const varoLib_s_dns& ipv4, const varoLib_s_dns6& ipv6) {
    const varo::ResolverText made = varo::resolverText(ipv4, ipv6);
    EXPECT_THAT(made.leftOut, IsEmpty());
    return made.content;
}

TEST(ResolverText, IsAHeadingWhenNothingIsSet) { EXPECT_EQ(text(dnsOf(""), dns6Of("")), heading); }

TEST(ResolverText, NamesPrimaryServersOfBothFamiliesFirst) {
    EXPECT_EQ(text(dnsOf("four.example.net", 0xC0000201, 0xC0000202),
                   dns6Of("six.example.net", "2001:db8::1", "2001:db8::2")),
              heading +
                  "search four.example.net six.example.net\n"
                  "nameserver 192.0.2.1\n"
                  "nameserver 2001:db8::1\n"
                  "nameserver 192.0.2.2\n"
                  "nameserver 2001:db8::2\n");
}

TEST(ResolverText, NamesADomainOfBothFamiliesOnce) {
    EXPECT_EQ(text(dnsOf("example.net"), dns6Of("example.net")), heading + "search example.net\n");
}

TEST(ResolverText, NamesASecondaryServerWithoutAPrimaryOne) {
    EXPECT_EQ(text(dnsOf("", 0, 0x7F000001), dns6Of("")), heading + "nameserver 127.0.0.1\n");
}

TEST(ResolverText, KeepsTheZoneOfALinkLocalServer) {
    EXPECT_EQ(text(dnsOf(""), dns6Of("", "fe80::1%mng0")), heading + "nameserver fe80::1%mng0\n");
}

TEST(ResolverText, LeavesOutADomainThatWouldAddALine) {
    for (const std::string domain :
         {"example.net\nnameserver 203.0.113.1", "two words", "tab\t", "return\r", "\x7f"}) {
        const auto made = varo::resolverText(dnsOf(domain, 0xC0000201), dns6Of(""));
        EXPECT_EQ(made.content, heading + "nameserver 192.0.2.1\n");
        EXPECT_EQ(made.leftOut.size(), 1U) << domain;
    }
    EXPECT_THAT(varo::resolverText(dnsOf("a\nb"), dns6Of("")).leftOut,
                ElementsAre("domain \"a\\x0ab\" is not one word"));
}

TEST(ResolverText, KeepsADomainWithBytesAboveAscii) {
    EXPECT_EQ(text(dnsOf("caf\xc3\xa9.example"), dns6Of("")),
              heading + "search caf\xc3\xa9.example\n");
}

TEST(ResolverText, LeavesOutServersThatAreNoIpv6Addresses) {
    for (const std::string server :
         {"192.0.2.1", "ns.example.net", "2001:db8::1\nsearch evil.example", "fe80::1%",
          "fe80::1%a b", "fe80::1%sixteen-letters-", "%mng0"}) {
        const auto made = varo::resolverText(dnsOf("", 0xC0000201), dns6Of("", server));
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
};

TEST_F(ResolverFile, HoldsTheValuesAfterAnUpdate) {
    open();
    EXPECT_EQ(content(), heading);
    EXPECT_EQ(store(2, dnsOf("example.net", 0xC0000201)), varo::success);
    EXPECT_EQ(content(), heading + "search example.net\nnameserver 192.0.2.1\n");
    EXPECT_EQ(store(2, dns6Of("", "2001:db8::1")), varo::success);
    EXPECT_EQ(content(),
              heading + "search example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
}

TEST_F(ResolverFile, HoldsTheStoredValuesOnceTheLibraryIsOpen) {
    open();
    EXPECT_EQ(store(2, dnsOf("example.net")), varo::success);
    varoLibDestroy();
    writeFile(resolverFile, "nameserver 203.0.113.1\n");
    open();
    EXPECT_EQ(content(), heading + "search example.net\n");
}

TEST_F(ResolverFile, HoldsTheSourceInForceOfEachFamily) {
    open();
    EXPECT_EQ(store(1, dnsOf("dhcp.example.net", 0xC0000201)), varo::success);
    EXPECT_EQ(store(1, dns6Of("", "2001:db8::1")), varo::success);
    EXPECT_EQ(content(),
              heading + "search dhcp.example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
    EXPECT_EQ(store(2, dnsOf("cli.example.net")), varo::success);
    EXPECT_EQ(content(), heading + "search cli.example.net\nnameserver 2001:db8::1\n");
    EXPECT_EQ(store(2, dnsOf("")), varo::success);
    EXPECT_EQ(content(),
              heading + "search dhcp.example.net\nnameserver 192.0.2.1\nnameserver 2001:db8::1\n");
}

TEST_F(ResolverFile, SaysWhichStoredValueHasNoPlaceInIt) {
    open();
    EXPECT_EQ(store(2, dns6Of("", "not an address")), varo::success);
    EXPECT_EQ(content(), heading);
    EXPECT_THAT(log.lines(), ElementsAre("3 resolver: left out of " + resolverFile.string() +
                                         ": server \"not an address\" is not an IPv6 address"));
}

TEST_F(ResolverFile, ThatCannotBeWrittenIsAnErrorWhileTheValuesAreStored) {
    open();
    std::filesystem::remove_all(resolverFile.parent_path());
    EXPECT_EQ(store(2, dnsOf("example.net")), varo::applyFailed);
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
    storedDns();
    std::filesystem::create_directory(resolverFile.parent_path());
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(content(), heading);
}

TEST_F(ResolverFile, IsNotTouchedWhenTheValuesCannotBeStored) {
    open();
    EXPECT_EQ(store(2, dnsOf("example.net")), varo::success);
    EXPECT_EQ(store(2, dnsOf(std::string(256, 'd'))), varo::invalidValue);
    EXPECT_EQ(content(), heading + "search example.net\n");
}

}  // namespace
