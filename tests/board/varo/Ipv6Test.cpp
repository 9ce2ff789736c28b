// IPv6 texts, and the calls where there is no interface to act on: they keep what is set.

#include "board/varo/link/ipv6Prefix.h"
#include "board/varo/varoCodes.h"
#include "tests/board/varo/VaroTest.h"

#include <array>
#include <functional>

namespace {

using namespace varotest;

std::string refusal(const std::function<void()>& body) {
    try {
        body();
    } catch (const varo::Failure& failure) {
        EXPECT_EQ(failure.code(), varo::invalidValue);
        return failure.what();
    }
    return "nothing";
}

std::string address(const std::string& text, std::uint32_t length) {
    return varo::prefixText(varo::checkedPrefix(text, length));
}

TEST(Ipv6Text, BecomesCanonical) {
    EXPECT_EQ(address("2001:DB8:0:0:0:0:0:7", 64), "2001:db8::7/64");
    EXPECT_EQ(address("fe80::1", 64), "fe80::1/64");
    EXPECT_EQ(address("fd00::192.0.2.1", 1), "fd00::c000:201/1");
    EXPECT_EQ(address("2001:db8::1", 128), "2001:db8::1/128");
}

TEST(Ipv6Text, ThatIsNoAddressIsNamed) {
    for (const char* const text : {"", " ", "2001:db8::g", "2001:db8::1::2", "192.0.2.1",
                                   "2001:db8::1/64", "fe80::1%mng0", "::1 ", "1:2:3:4:5:6:7:8:9"}) {
        EXPECT_EQ(refusal([&] { varo::checkedPrefix(text, 64); }),
                  '"' + std::string(text) + "\" is not an IPv6 address");
    }
    EXPECT_EQ(refusal([] { varo::checkedIpv6Gateway(std::string("fe80::1\0x", 9)); }),
              "\"fe80::1\\x00x\" is not an IPv6 address");
    EXPECT_EQ(refusal([] { varo::checkedIpv6Gateway(std::string(99, '1')); }),
              '"' + std::string(80, '1') + "...\" is not an IPv6 address");
}

TEST(Ipv6Text, OfNoHostIsRefused) {
    for (const char* const text :
         {"::", "::1", "::192.0.2.1", "::ffff:192.0.2.1", "ff02::1", "ff0e::5"}) {
        EXPECT_NE(refusal([&] { varo::checkedPrefix(text, 64); }), "nothing") << text;
        EXPECT_NE(refusal([&] { varo::checkedIpv6Gateway(text); }), "nothing") << text;
    }
    EXPECT_EQ(refusal([] { varo::checkedIpv6Gateway("ff02::2"); }),
              "the gateway ff02::2 is not the address of a host");
}

TEST(Ipv6Text, HasAPrefixOf1To128) {
    for (const std::uint32_t length : {0U, 129U, 65536U, 4294967295U}) {
        EXPECT_EQ(refusal([&] { varo::checkedPrefix("2001:db8::1", length); }),
                  "the prefix length " + std::to_string(length) + " is not in 1 to 128");
    }
}

TEST(Ipv6Text, OfAllRoutersOfANetworkIsNoHosts) {
    EXPECT_EQ(refusal([] { varo::checkedPrefix("2001:db8::", 64); }),
              "2001:db8::/64 is the address of the network's routers");
    EXPECT_EQ(refusal([] { varo::checkedPrefix("2001:db8::4", 126); }),
              "2001:db8::4/126 is the address of the network's routers");
    EXPECT_EQ(address("2001:db8::", 127), "2001:db8::/127");
    EXPECT_EQ(address("2001:db8::", 128), "2001:db8::/128");
    EXPECT_EQ(address("2001:db8::", 16), "2001:db8::/16");
}

class Ipv6WithoutInterface : public VaroTest {
protected:
    static varoLib_s_ipv6 read() {
        varoLib_s_ipv6 record;
        std::memset(&record, 0xaa, sizeof record);
        EXPECT_EQ(varoGetIpv6(&record), varo::success);
        return record;
    }
    static int setAddress(const std::string& text, std::uint32_t length) {
        varoLib_s_ipv6 record{};
        setText(record.ipv6Addr, text);
        record.prefixLen = length;
        return varoSetIpv6Addr(&record);
    }
    static int setGateway(const std::string& text) {
        varoLib_s_ipv6 record{};
        setText(record.ipv6Gw, text);
        return varoSetIpv6Gw(&record);
    }
};

TEST_F(Ipv6WithoutInterface, IsEmptyAtFirst) {
    const varoLib_s_ipv6 record = read();
    EXPECT_STREQ(record.ipv6Addr, "");
    EXPECT_EQ(record.prefixLen, 0U);
    EXPECT_STREQ(record.ipv6AddrList, "");
    EXPECT_STREQ(record.ipv6Gw, "");
}

TEST_F(Ipv6WithoutInterface, IsKeptAcrossARestart) {
    EXPECT_EQ(setAddress("2001:DB8::7", 64), varo::success);
    EXPECT_EQ(setGateway("FE80::1"), varo::success);
    ASSERT_EQ(restart(), varo::success);
    const varoLib_s_ipv6 record = read();
    EXPECT_STREQ(record.ipv6Addr, "2001:db8::7");
    EXPECT_EQ(record.prefixLen, 64U);
    EXPECT_STREQ(record.ipv6AddrList, "2001:db8::7/64");
    EXPECT_STREQ(record.ipv6Gw, "fe80::1");
    EXPECT_EQ(sql(file, "SELECT address, prefix_length, gateway FROM ipv6"),
              "2001:db8::7|64|fe80::1");
}

TEST_F(Ipv6WithoutInterface, IsRemovedOnce) {
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::notThere);
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::notThere);
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::success);
    EXPECT_STREQ(read().ipv6Addr, "");
    EXPECT_STREQ(read().ipv6Gw, "2001:db8::1");
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::success);
    EXPECT_EQ(sql(file, "SELECT address, prefix_length, gateway FROM ipv6"), "|0|");
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::notThere);
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::notThere);
}

TEST_F(Ipv6WithoutInterface, RecordIsChecked) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(varoSetIpv6Addr(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoSetIpv6Gw(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetIpv6(nullptr), varo::invalidArgument);
    EXPECT_EQ(setAddress("2001:db8::8", 0), varo::invalidValue);
    EXPECT_EQ(setAddress("2001:db8::8", 129), varo::invalidValue);
    EXPECT_EQ(setAddress("", 64), varo::invalidValue);
    EXPECT_EQ(setGateway(""), varo::invalidValue);
    // Not terminated within its field.
    EXPECT_EQ(setAddress(std::string(100, 'a'), 64), varo::invalidValue);
    EXPECT_EQ(setGateway(std::string(100, 'a')), varo::invalidValue);
    EXPECT_STREQ(read().ipv6AddrList, "2001:db8::7/64");
}

TEST_F(Ipv6WithoutInterface, DhcpSwitchIsOnAtFirstAndKept) {
    varoLib_s_dhcp6 record{7, 7};
    EXPECT_EQ(varoGetDhcp6(&record), varo::success);
    EXPECT_EQ(record.dhcpEnabled, 1U);
    EXPECT_EQ(varoUpdateDhcp6(&record), varo::invalidValue);
    EXPECT_THAT(log.take(), ElementsAre("3 varoUpdateDhcp6: there is no update 0"));
    record = {2, 0};
    EXPECT_EQ(varoUpdateDhcp6(&record), varo::success);
    ASSERT_EQ(restart(), varo::success);
    record = {7, 7};
    EXPECT_EQ(varoGetDhcp6(&record), varo::success);
    EXPECT_EQ(record.dhcpEnabled, 0U);
    EXPECT_EQ(varoGetDhcp6(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateDhcp6(nullptr), varo::invalidArgument);
}

}  // namespace
