// IPv6 address, gateway and DHCPv6 client.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

namespace {

const std::string ipv6Read =
    R"(varoGetIpv6() -> 0 {addr="2001:db8::10" prefix=64 list="2001:db8::10/64 fe80::7/64" gw="fe80::1"})";

class Ipv6 : public EntityTest {
protected:
    Ipv6() {
        put(platform.addressing.ipv6.ipv6Addr, "2001:db8::10");
        platform.addressing.ipv6.prefixLen = 64;
        put(platform.addressing.ipv6.ipv6AddrList, "2001:db8::10/64 fe80::7/64");
        put(platform.addressing.ipv6.ipv6Gw, "fe80::1");
        logEverything();
    }

    varoLib_s_ipv6& state() { return platform.addressing.ipv6; }

    // The operations take texts that they may write to, and do not.
    static int setAddress(std::string text, unsigned int prefixLength) {
        const std::string before = text;
        const int status = networkSetIpv6Addr(text.data(), prefixLength);
        EXPECT_EQ(text, before);
        return status;
    }
    static int setGateway(std::string text) {
        const std::string before = text;
        const int status = networkSetIpv6Gw(text.data());
        EXPECT_EQ(text, before);
        return status;
    }
};

// Address.

TEST_F(Ipv6, AddressIsSetInARecordOfItsOwn) {
    EXPECT_EQ(setAddress("2001:db8::20", 48), 0);
    EXPECT_JOURNAL(
        exclusively(R"(varoSetIpv6Addr({addr="2001:db8::20" prefix=48 list="" gw=""}) -> 0)"));
    EXPECT_STREQ(state().ipv6Addr, "2001:db8::20");
    EXPECT_STREQ(state().ipv6Gw, "fe80::1");
}

TEST_F(Ipv6, AddressAndPrefixLengthAreNotChecked) {
    EXPECT_EQ(setAddress("", 0), 0);
    EXPECT_EQ(setAddress("no address", 4294967295U), 0);
    EXPECT_JOURNAL(
        exclusively(R"(varoSetIpv6Addr({addr="" prefix=0 list="" gw=""}) -> 0)"),
        exclusively(
            R"(varoSetIpv6Addr({addr="no address" prefix=4294967295 list="" gw=""}) -> 0)"));
}

TEST_F(Ipv6, AddressIsCutTo99Characters) {
    for (const std::size_t length : {99U, 100U, 120U, 4000U}) {
        EXPECT_EQ(setAddress(std::string(length, 'a'), 64), 0);
        EXPECT_EQ(journal()[1], R"(varoSetIpv6Addr({addr=")" + std::string(99, 'a') +
                                    R"(" prefix=64 list="" gw=""}) -> 0)");
    }
}

TEST_F(Ipv6, AddressIsFollowedByZeroBytesOnly) {
    EXPECT_EQ(setAddress("::1", 64), 0);
    EXPECT_TRUE(std::all_of(std::begin(state().ipv6Addr) + 3, std::end(state().ipv6Addr),
                            [](char byte) { return byte == '\0'; }));
    journal();
}

TEST_F(Ipv6, AddressThatIsNullIsReported) {
    EXPECT_EQ(networkSetIpv6Addr(nullptr, 64), -1);
    EXPECT_JOURNAL(
        exclusively(error("setIpv6Addr failed! One of input args is NULL. ipv6Addr: (nil)")));
}

TEST_F(Ipv6, AddressThatIsRefusedIsReported) {
    platform.fail("varoSetIpv6Addr", -22);
    EXPECT_EQ(setAddress("2001:db8::20", 48), -1);
    EXPECT_JOURNAL(
        exclusively(R"(varoSetIpv6Addr({addr="2001:db8::20" prefix=48 list="" gw=""}) -> -22)",
                    error("setIpv6Addr: varoSetIpv6Addr has failed! Return value: -22")));
    EXPECT_STREQ(state().ipv6Addr, "2001:db8::10");
}

TEST_F(Ipv6, AddressIsRemoved) {
    EXPECT_EQ(networkRemoveIpv6Addr(), 0);
    EXPECT_JOURNAL(exclusively("varoRemoveIpv6Addr() -> 0"));
    EXPECT_STREQ(state().ipv6Addr, "");
    EXPECT_STREQ(state().ipv6Gw, "fe80::1");
}

TEST_F(Ipv6, AddressThatCannotBeRemovedIsReported) {
    platform.fail("varoRemoveIpv6Addr", 5);
    EXPECT_EQ(networkRemoveIpv6Addr(), -1);
    EXPECT_JOURNAL(
        exclusively("varoRemoveIpv6Addr() -> 5",
                    error("removeIpv6Addr: varoRemoveIpv6Addr has failed! Return value: 5")));
}

// Gateway.

TEST_F(Ipv6, GatewayIsSetInARecordOfItsOwn) {
    EXPECT_EQ(setGateway("fe80::2"), 0);
    EXPECT_JOURNAL(exclusively(R"(varoSetIpv6Gw({addr="" prefix=0 list="" gw="fe80::2"}) -> 0)"));
    EXPECT_STREQ(state().ipv6Gw, "fe80::2");
    EXPECT_STREQ(state().ipv6Addr, "2001:db8::10");
}

TEST_F(Ipv6, GatewayIsCutTo99Characters) {
    for (const std::size_t length : {99U, 100U, 120U, 4000U}) {
        EXPECT_EQ(setGateway(std::string(length, 'b')), 0);
        EXPECT_EQ(journal()[1], R"(varoSetIpv6Gw({addr="" prefix=0 list="" gw=")" +
                                    std::string(99, 'b') + R"("}) -> 0)");
    }
}

TEST_F(Ipv6, GatewayThatIsNullIsReported) {
    EXPECT_EQ(networkSetIpv6Gw(nullptr), -1);
    EXPECT_JOURNAL(
        exclusively(error("setIpv6Gw failed! One of input args is NULL. ipv6Gw: (nil)")));
}

TEST_F(Ipv6, GatewayThatIsRefusedIsReportedWithTheDoubledWord) {
    platform.fail("varoSetIpv6Gw", 22);
    EXPECT_EQ(setGateway("fe80::2"), -1);
    EXPECT_JOURNAL(
        exclusively(R"(varoSetIpv6Gw({addr="" prefix=0 list="" gw="fe80::2"}) -> 22)",
                    error("setIpv6ipv6Gw: varoSetIpv6ipv6Gw has failed! Return value: 22")));
}

TEST_F(Ipv6, GatewayIsRemoved) {
    EXPECT_EQ(networkRemoveIpv6Gw(), 0);
    EXPECT_JOURNAL(exclusively("varoRemoveIpv6Gw() -> 0"));
    EXPECT_STREQ(state().ipv6Gw, "");
    EXPECT_STREQ(state().ipv6Addr, "2001:db8::10");
}

TEST_F(Ipv6, GatewayThatCannotBeRemovedIsReported) {
    platform.fail("varoRemoveIpv6Gw", -5);
    EXPECT_EQ(networkRemoveIpv6Gw(), -1);
    EXPECT_JOURNAL(exclusively("varoRemoveIpv6Gw() -> -5",
                               error("removeIpv6Gw: varoRemoveIpv6Gw has failed! Return value: "
                                     "-5")));
}

// Queries.

TEST_F(Ipv6, ListAndGatewayAreRead) {
    Buffer<2000> list;
    Buffer<100> gateway;
    EXPECT_EQ(networkGetIpv6Addr(list.text, gateway.text), 0);
    EXPECT_JOURNAL(sharing(ipv6Read));
    EXPECT_EQ(list.content(), "2001:db8::10/64 fe80::7/64");
    EXPECT_EQ(gateway.content(), "fe80::1");
    EXPECT_TRUE(list.isIntactBehind());
    EXPECT_TRUE(gateway.isIntactBehind());
}

TEST_F(Ipv6, ListIsReadCutTo1999AndGatewayTo99Characters) {
    // Fields without a terminator, which the library is not to leave behind.
    std::memset(state().ipv6AddrList, 'l', sizeof state().ipv6AddrList);
    std::memset(state().ipv6Gw, 'g', sizeof state().ipv6Gw);
    Buffer<2000> list;
    Buffer<100> gateway;
    EXPECT_EQ(networkGetIpv6Addr(list.text, gateway.text), 0);
    EXPECT_EQ(list.content(), std::string(1999, 'l'));
    EXPECT_EQ(gateway.content(), std::string(99, 'g'));
    EXPECT_TRUE(list.isIntactBehind());
    EXPECT_TRUE(gateway.isIntactBehind());
    journal();
}

TEST_F(Ipv6, ListOf1999AndGatewayOf99CharactersAreReadWhole) {
    put(state().ipv6AddrList, std::string(1999, 'l'));
    put(state().ipv6Gw, std::string(99, 'g'));
    Buffer<2000> list;
    Buffer<100> gateway;
    EXPECT_EQ(networkGetIpv6Addr(list.text, gateway.text), 0);
    EXPECT_EQ(list.content(), std::string(1999, 'l'));
    EXPECT_EQ(gateway.content(), std::string(99, 'g'));
    journal();
}

TEST_F(Ipv6, ListThatCannotBeReadIsReportedAndTheBuffersStay) {
    platform.fail("varoGetIpv6", 5);
    Buffer<2000> list;
    Buffer<100> gateway;
    EXPECT_EQ(networkGetIpv6Addr(list.text, gateway.text), -1);
    EXPECT_JOURNAL(sharing("varoGetIpv6() -> 5", error("getIpv6Addr: varoGetIpv6 has failed!")));
    EXPECT_TRUE(list.isUntouched());
    EXPECT_TRUE(gateway.isUntouched());
}

TEST_F(Ipv6, InformationIsRead) {
    auto info = filled<Network::NetworkInfoIpv6>(0xff);
    EXPECT_EQ(entity().getNetworkInfoIpv6(&info), 0);
    EXPECT_JOURNAL(sharing(ipv6Read));
    EXPECT_STREQ(info.ipv6Addr, "2001:db8::10");
    EXPECT_EQ(info.prefixLen, 64U);
    EXPECT_STREQ(info.ipv6Gw, "fe80::1");
    EXPECT_EQ(info.ipv6Addr[99], '\0') << "the record is cleared first";
}

TEST_F(Ipv6, InformationHoldsTextsOf99Characters) {
    put(state().ipv6Addr, std::string(99, 'a'));
    put(state().ipv6Gw, std::string(99, 'g'));
    Network::NetworkInfoIpv6 info{};
    EXPECT_EQ(entity().getNetworkInfoIpv6(&info), 0);
    EXPECT_EQ(info.ipv6Addr, std::string(99, 'a'));
    EXPECT_EQ(info.prefixLen, 64U);
    EXPECT_EQ(info.ipv6Gw, std::string(99, 'g'));
    journal();
}

TEST_F(Ipv6, InformationThatCannotBeReadIsEmptyAndNoFailure) {
    platform.fail("varoGetIpv6", 5);
    platform.addressing.ipv6LeftByFailure = state();
    auto info = filled<Network::NetworkInfoIpv6>(0xff);
    EXPECT_EQ(entity().getNetworkInfoIpv6(&info), 0);
    EXPECT_JOURNAL(sharing("varoGetIpv6() -> 5"));
    EXPECT_TRUE(areSame(info, Network::NetworkInfoIpv6{}));
}

TEST_F(Ipv6, InformationRecordThatIsNullIsReported) {
    EXPECT_EQ(entity().getNetworkInfoIpv6(nullptr), -1);
    EXPECT_JOURNAL(
        sharing(error("getNetworkInfoIpv6 failed! One of input args is NULL. info: (nil)")));
}

// DHCPv6.

TEST_F(Ipv6, StateOfDhcpIsRead) {
    for (const auto& [value, text] : {std::pair{0U, "0"}, {1U, "1"}, {256U, "256"}}) {
        platform.addressing.dhcp6.dhcpEnabled = value;
        bool on = value == 0;
        EXPECT_EQ(networkGetIPv6Proto(&on), 0);
        EXPECT_EQ(on, value != 0);
        EXPECT_JOURNAL(sharing(std::string("varoGetDhcp6() -> 0 {selector=0 dhcp=") + text + "}"));
    }
}

TEST_F(Ipv6, DhcpIsReportedOnWhenItCannotBeRead) {
    platform.fail("varoGetDhcp6", -5);
    bool on = false;
    EXPECT_EQ(networkGetIPv6Proto(&on), 0);
    EXPECT_TRUE(on);
    EXPECT_JOURNAL(
        sharing("varoGetDhcp6() -> -5",
                error("getIPv6Proto: varoGetDhcp6 has failed: rv=-5, DHCP IPv6 default value "
                      "is ON")));
}

TEST_F(Ipv6, StateOfDhcpThatIsNullIsReported) {
    EXPECT_EQ(networkGetIPv6Proto(nullptr), -1);
    EXPECT_JOURNAL(sharing(error("getIPv6Proto failed! One of input args is NULL. state: (nil)")));
}

TEST_F(Ipv6, DhcpIsSwitchedOffInOneUpdate) {
    platform.addressing.dhcp6 = {7, 1};
    EXPECT_EQ(networkSetIPv6Proto(0), 0);
    EXPECT_JOURNAL(sharing("varoGetDhcp6() -> 0 {selector=7 dhcp=1}",
                           "varoUpdateDhcp6({selector=2 dhcp=0}) -> 0",
                           trace("setIPv6Proto: return value for varoUpdateDhcp6: 0")));
}

TEST_F(Ipv6, DhcpIsSwitchedOnByAnyValueButZero) {
    for (const int on : {1, 2, -1, 256}) {
        platform.addressing.dhcp6 = {};
        EXPECT_EQ(networkSetIPv6Proto(on), 0);
        EXPECT_JOURNAL(sharing("varoGetDhcp6() -> 0 {selector=0 dhcp=0}",
                               "varoUpdateDhcp6({selector=2 dhcp=1}) -> 0",
                               trace("setIPv6Proto: return value for varoUpdateDhcp6: 0")));
    }
}

TEST_F(Ipv6, SwitchIsWrittenThoughTheRecordCannotBeRead) {
    platform.fail("varoGetDhcp6", 5);
    EXPECT_EQ(networkSetIPv6Proto(1), 0);
    EXPECT_JOURNAL(sharing("varoGetDhcp6() -> 5", "varoUpdateDhcp6({selector=2 dhcp=1}) -> 0",
                           trace("setIPv6Proto: return value for varoUpdateDhcp6: 0")));
}

TEST_F(Ipv6, SwitchThatCannotBeWrittenFails) {
    platform.fail("varoUpdateDhcp6", -6);
    EXPECT_EQ(networkSetIPv6Proto(1), -1);
    EXPECT_JOURNAL(sharing("varoGetDhcp6() -> 0 {selector=0 dhcp=0}",
                           "varoUpdateDhcp6({selector=2 dhcp=1}) -> -6",
                           trace("setIPv6Proto: return value for varoUpdateDhcp6: -6")));
    EXPECT_EQ(platform.addressing.dhcp6.dhcpEnabled, 0U);
}

}  // namespace
