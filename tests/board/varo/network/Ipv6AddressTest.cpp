// The address and the gateway that are set by hand, on the kernel.

#include "tests/board/varo/network/Ipv6Test.h"

#include <algorithm>

namespace {

using namespace varotest;

class Ipv6OnInterface : public Ipv6Test {};

TEST_F(Ipv6OnInterface, AddressIsSetAndRead) {
    EXPECT_EQ(setAddress("2001:DB8::7", 64), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
    const varoLib_s_ipv6 record = read();
    EXPECT_STREQ(record.ipv6Addr, "2001:db8::7");
    EXPECT_EQ(record.prefixLen, 64U);
    EXPECT_EQ(record.ipv6AddrList, listed());
    EXPECT_THAT(record.ipv6AddrList, AllOf(HasSubstr("2001:db8::7/64"), HasSubstr("fe80::")));
    EXPECT_EQ(storedIpv6(), "2001:db8::7|64|");
}

TEST_F(Ipv6OnInterface, AddressReachesAHostOnTheLan) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_TRUE(eventually([] { return isReached("2001:db8::7"); }));
}

TEST_F(Ipv6OnInterface, AddressTakesThePlaceOfTheOneBeforeAndLeavesOthersAlone) {
    shell("ip address add 2001:db8:5::5/64 dev mng0 nodad");
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(setAddress("2001:db8::8", 64), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::8/64 2001:db8:5::5/64");
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8:5::5/64");
    EXPECT_STREQ(read().ipv6Addr, "");
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::notThere);
    EXPECT_EQ(lines.count("3 varoRemoveIpv6Addr: no IPv6 address is set by hand"), 1);
}

TEST_F(Ipv6OnInterface, AddressChangesItsNetwork) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(setAddress("2001:db8::7", 48), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::7/48");
    EXPECT_EQ(setAddress("2001:db8::7", 128), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::7/128");
    EXPECT_EQ(storedIpv6(), "2001:db8::7|128|");
}

TEST_F(Ipv6OnInterface, AddressThatIsThereIsSetOnceMore) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
}

TEST_F(Ipv6OnInterface, AddressThatNoHostCanHaveChangesNothing) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    for (const auto& [text, length] :
         std::vector<std::pair<const char*, std::uint32_t>>{{"::", 64},
                                                            {"::1", 128},
                                                            {"ff02::1", 64},
                                                            {"2001:db8::", 64},
                                                            {"2001:db8::9", 0},
                                                            {"2001:db8::9", 129},
                                                            {"2001:db8::9/64", 64},
                                                            {"192.0.2.9", 24}}) {
        EXPECT_EQ(setAddress(text, length), varo::invalidValue) << text << ' ' << length;
        EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
        EXPECT_EQ(storedIpv6(), "2001:db8::7|64|");
    }
}

TEST_F(Ipv6OnInterface, IsRefusedWhereTheKernelHasItSwitchedOff) {
    shell("sysctl -q -w net.ipv6.conf.mng0.disable_ipv6=1");
    EXPECT_EQ(setAddress("2001:db8::7", 64), varo::systemFailed);
    EXPECT_EQ(lines.count("3 varoSetIpv6Addr: cannot add the address 2001:db8::7/64 to mng0: "), 1)
        << lines.all();
    EXPECT_EQ(storedIpv6(), "");
}

TEST_F(Ipv6OnInterface, OfAMissingInterfaceIsEmptyAndCannotBeChanged) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    cutCable();
    EXPECT_EQ(setAddress("2001:db8::8", 64), varo::noSuchInterface);
    EXPECT_EQ(setGateway("fe80::1"), varo::noSuchInterface);
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::noSuchInterface);
    const varoLib_s_ipv6 record = read();
    EXPECT_STREQ(record.ipv6Addr, "");
    EXPECT_STREQ(record.ipv6AddrList, "");
    EXPECT_EQ(storedIpv6(), "2001:db8::7|64|");
}

TEST_F(Ipv6OnInterface, GatewayIsSetReplacedReadAndRemoved) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(setGateway("2001:db8::1"), varo::success);
    EXPECT_EQ(ipv6Gateways(), "2001:db8::1");
    EXPECT_EQ(setGateway("2001:db8::2"), varo::success);
    EXPECT_EQ(ipv6Gateways(), "2001:db8::2");
    EXPECT_STREQ(read().ipv6Gw, "2001:db8::2");
    EXPECT_EQ(setGateway("2001:db8::2"), varo::success);
    EXPECT_EQ(storedIpv6(), "2001:db8::7|64|2001:db8::2");
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::success);
    EXPECT_EQ(ipv6Gateways(), "");
    EXPECT_STREQ(read().ipv6Gw, "");
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::notThere);
    EXPECT_EQ(lines.count("3 varoRemoveIpv6Gw: no IPv6 gateway is set by hand"), 1);
}

TEST_F(Ipv6OnInterface, GatewayMayBeLinkLocal) {
    EXPECT_EQ(setGateway("fe80::1"), varo::success);
    EXPECT_EQ(ipv6Gateways(), "fe80::1");
    EXPECT_STREQ(read().ipv6Gw, "fe80::1");
}

TEST_F(Ipv6OnInterface, GatewayThatIsNoNeighbourIsRefusedByTheKernel) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    EXPECT_EQ(setGateway("2001:db8:9::1"), varo::systemFailed);
    EXPECT_EQ(lines.count("3 varoSetIpv6Gw: cannot set the default route via 2001:db8:9::1 by "
                          "mng0: No route to host"),
              1)
        << lines.all();
    EXPECT_EQ(ipv6Gateways(), "2001:db8::1");
    EXPECT_EQ(storedIpv6(), "2001:db8::7|64|2001:db8::1");
}

TEST_F(Ipv6OnInterface, GatewayThatNoNeighbourCanHaveIsRefused) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    for (const char* const text :
         {"::", "::1", "ff02::2", "ff05::1", "2001:db8::7", "192.0.2.1", "", "x"}) {
        EXPECT_EQ(setGateway(text), varo::invalidValue) << text;
    }
    EXPECT_EQ(lines.count("the gateway 2001:db8::7 is the board's own address"), 1);
    EXPECT_EQ(ipv6Gateways(), "");
}

TEST_F(Ipv6OnInterface, GatewaySetByHandGoesBeforeAnAdvertisedOne) {
    shell("ip -6 route add default via fe80::99 dev mng0 proto ra metric 1024");
    EXPECT_STREQ(read().ipv6Gw, "fe80::99");
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::notThere);
    EXPECT_EQ(setGateway("fe80::1"), varo::success);
    EXPECT_STREQ(read().ipv6Gw, "fe80::1");
    EXPECT_EQ(ipv6Gateways(), "fe80::1 fe80::99");
    EXPECT_EQ(varoRemoveIpv6Gw(), varo::success);
    EXPECT_STREQ(read().ipv6Gw, "fe80::99");
}

TEST_F(Ipv6OnInterface, IsInForceAgainAfterARestart) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    close();
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
    shell("ip link set mng0 down");
    EXPECT_EQ(globalAddresses(), "");
    open();
    EXPECT_TRUE(eventually([] { return ipv6Gateways() == "2001:db8::1"; }));
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
}

TEST_F(Ipv6OnInterface, IsInForceAgainWhenTheInterfaceComesBack) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    cutCable();
    ASSERT_TRUE(lines.await("the interface mng0 is gone"));
    layCable();
    EXPECT_TRUE(eventually([] { return ipv6Gateways() == "2001:db8::1"; }));
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
}

TEST_F(Ipv6OnInterface, IsInForceAgainWhenTheInterfaceIsTakenUp) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    shell("ip link set mng0 down");
    EXPECT_EQ(globalAddresses(), "");
    shell("ip link set mng0 up");
    EXPECT_TRUE(eventually([] { return ipv6Gateways() == "2001:db8::1"; }));
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
}

TEST_F(Ipv6OnInterface, GatewayIsInForceAgainWhereItsNetworkIsNotKnownYet) {
    // The network that it is in was advertised by a router.
    shell("ip -6 route add 2001:db8:7::/64 dev mng0");
    ASSERT_EQ(setGateway("2001:db8:7::1"), varo::success);
    close();
    shell("ip link set mng0 down && ip link set mng0 up");
    EXPECT_EQ(ipv6Gateways(), "");
    open();
    EXPECT_TRUE(eventually([] { return ipv6Gateways() == "2001:db8:7::1"; }));
    EXPECT_EQ(storedIpv6(), "|0|2001:db8:7::1");
}

TEST_F(Ipv6OnInterface, RemovedStaysSoAfterARestart) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(setGateway("2001:db8::1"), varo::success);
    ASSERT_EQ(varoRemoveIpv6Gw(), varo::success);
    ASSERT_EQ(varoRemoveIpv6Addr(), varo::success);
    restart();
    EXPECT_EQ(globalAddresses(), "");
    EXPECT_EQ(ipv6Gateways(), "");
}

TEST_F(Ipv6OnInterface, SettingsThatNoCallHasWrittenAreReportedAndReplaced) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    close();
    shell("ip address flush dev mng0 scope global");
    sql(file, "UPDATE ipv6 SET address = 'nonsense', prefix_length = 999");
    EXPECT_EQ(varoLibInit(), varo::applyFailed);
    EXPECT_EQ(
        lines.count("the IPv6 settings of mng0 are stored, but not in force: \"nonsense\"/999, "
                    "gateway \"\", are not IPv6 settings"),
        1)
        << lines.all();
    EXPECT_STREQ(read().ipv6Addr, "");
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::notThere);
    EXPECT_EQ(setAddress("2001:db8::8", 64), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::8/64");
}

TEST_F(Ipv6OnInterface, ListHasWholeAddressesOnly) {
    std::string batch;
    for (int i = 1; i <= 60; ++i) {
        batch += "address add 2001:db8:1111:2222:3333:4444:5555:" + std::to_string(1000 + i) +
                 "/64 dev mng0 nodad\\n";
    }
    shell("printf '" + batch + "' | ip -6 -batch -");
    const varoLib_s_ipv6 record = read();
    const std::string list = record.ipv6AddrList;
    EXPECT_GT(list.size(), 1900U);
    EXPECT_LT(list.size(), sizeof record.ipv6AddrList);
    EXPECT_TRUE(list.ends_with("/64")) << list;
    // Besides the 60, there is the link-local one.
    const auto listedOnes = 1 + std::count(list.begin(), list.end(), ' ');
    EXPECT_EQ(lines.count("4 " + std::to_string(61 - listedOnes) +
                          " of 61 IPv6 addresses have no room in the list"),
              1)
        << lines.all();
}

TEST_F(Ipv6OnInterface, SettingsOfIpv4AreIndependent) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    ASSERT_EQ(attach("192.0.2.8", "255.255.255.0"), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
    EXPECT_EQ(addresses(), "192.0.2.8/24");
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.8/24");
}

}  // namespace
