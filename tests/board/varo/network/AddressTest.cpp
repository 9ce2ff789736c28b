#include "tests/board/varo/network/NetworkTest.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <array>

namespace {

using namespace varotest;

class Address : public NetworkTest {};

TEST_F(Address, IsAttachedWithItsMaskAndBroadcastAddress) {
    EXPECT_EQ(attach("192.0.2.77", "255.255.255.192"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.77/26");
    EXPECT_THAT(shell("ip -4 address show dev mng0"), HasSubstr("brd 192.0.2.127"));
    varoLib_s_interface record{};
    setText(record.name, "mng0");
    EXPECT_EQ(varoGetInterface(&record), varo::success);
    EXPECT_EQ(record.ipAddr, htonl(ipv4("192.0.2.77")));
    EXPECT_EQ(record.netmask, htonl(ipv4("255.255.255.192")));
    EXPECT_EQ(stored(), "192.0.2.77|255.255.255.192|");
}

TEST_F(Address, BecomesTheOnlyOneOfTheInterface) {
    shell(
        "ip address add 198.51.100.9/24 dev mng0 && ip address add 192.0.2.5/24 dev mng0 && "
        "ip address add 192.0.2.6/24 dev mng0");
    EXPECT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(shell("ip route show dev mng0"),
              "192.0.2.0/24 proto kernel scope link src 192.0.2.7 ");
}

TEST_F(Address, OfTheInterfaceChangesItsMask) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_EQ(attach("192.0.2.7", "255.255.0.0"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.7/16");
}

TEST_F(Address, ThatIsThereAlreadyIsAttachedOnceMore) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(gateways(), "192.0.2.1");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|192.0.2.1");
}

TEST_F(Address, ReachesAHostOnTheLan) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_THAT(shell("ip netns exec lan ping -c 1 -W 5 192.0.2.7"), HasSubstr("1 received"));
}

TEST_F(Address, ThatNoHostCanHaveIsRefusedAndChangesNothing) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    constexpr std::array<std::array<const char*, 2>, 12> refused{{
        {"192.0.2.9", "255.0.255.0"},
        {"192.0.2.9", "0.255.255.255"},
        {"192.0.2.9", "255.255.255.253"},
        {"192.0.2.9", "0.0.0.0"},
        {"0.0.0.0", "255.255.255.0"},
        {"0.1.2.3", "255.255.255.0"},
        {"127.0.0.1", "255.0.0.0"},
        {"224.0.0.1", "255.255.255.0"},
        {"240.0.0.1", "255.255.255.0"},
        {"255.255.255.255", "255.255.255.255"},
        {"192.0.2.0", "255.255.255.0"},
        {"192.0.2.255", "255.255.255.0"},
    }};
    for (const auto& [address, mask] : refused) {
        EXPECT_EQ(attach(address, mask), varo::invalidValue) << address << ' ' << mask;
        EXPECT_EQ(addresses(), "192.0.2.7/24");
    }
    EXPECT_EQ(lines.count("3 varoAttachIpToIntf: "), static_cast<int>(refused.size()));
    for (const char* const reason :
         {"the mask 255.0.255.0 has holes", "the mask 0.0.0.0 leaves no network",
          "192.0.2.0/24 is the address of the network itself",
          "192.0.2.255/24 is the broadcast address of its network"}) {
        EXPECT_EQ(lines.count(std::string("3 varoAttachIpToIntf: ") + reason), 1) << reason;
    }
}

TEST_F(Address, MayHaveAMaskWithoutRoomForNetworkAndBroadcast) {
    EXPECT_EQ(attach("192.0.2.8", "255.255.255.254"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.8/31");
    EXPECT_EQ(attach("192.0.2.255", "255.255.255.255"), varo::success);
    EXPECT_EQ(addresses(), "192.0.2.255/32");
}

TEST_F(Address, OfAMissingInterfaceIsRefused) {
    EXPECT_EQ(attach("192.0.2.7", "255.255.255.0", "nosuch0"), varo::noSuchInterface);
    EXPECT_EQ(detach("192.0.2.7", "255.255.255.0", "nosuch0"), varo::noSuchInterface);
    EXPECT_EQ(lines.count("3 varoAttachIpToIntf: there is no interface \"nosuch0\""), 1);
    EXPECT_EQ(lines.count("3 varoDettachIpFromIntf: there is no interface \"nosuch0\""), 1);
}

TEST_F(Address, RecordIsChecked) {
    EXPECT_EQ(varoAttachIpToIntf(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoDettachIpFromIntf(nullptr), varo::invalidArgument);
    varoLib_s_interface record{};
    std::memset(record.name, 'x', sizeof record.name);
    EXPECT_EQ(varoAttachIpToIntf(&record), varo::invalidValue);
    EXPECT_EQ(lines.count("3 varoAttachIpToIntf: the interface name is not terminated within its "
                          "field"),
              1);
}

TEST_F(Address, IsDetachedAndForgotten) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(detach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_EQ(addresses(), "");
    // The kernel has dropped the route with it.
    EXPECT_EQ(stored(), "||");
}

TEST_F(Address, ThatIsNotThereCannotBeDetached) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    EXPECT_EQ(detach("192.0.2.8", "255.255.255.0"), varo::notThere);
    EXPECT_EQ(detach("192.0.2.7", "255.255.0.0"), varo::notThere);
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|");
    EXPECT_EQ(lines.count("3 varoDettachIpFromIntf: mng0 has no address 192.0.2.8/24"), 1);
}

TEST_F(Address, OfAnotherInterfaceIsAddedAndNotStored) {
    EXPECT_EQ(attach("198.51.100.1", "255.255.255.255", "lo"), varo::success);
    EXPECT_EQ(addresses("lo"), "127.0.0.1/8 198.51.100.1/32");
    EXPECT_EQ(stored(), "||");
    EXPECT_EQ(detach("198.51.100.1", "255.255.255.255", "lo"), varo::success);
    EXPECT_EQ(addresses("lo"), "127.0.0.1/8");
}

TEST_F(Address, IsInForceAgainAfterARestart) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    close();
    shell("ip address flush dev mng0 && ip link set mng0 down");
    open();
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(gateways(), "192.0.2.1");
}

TEST_F(Address, StaysOnTheInterfaceWhenTheLibraryCloses) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    close();
    EXPECT_EQ(addresses(), "192.0.2.7/24");
}

TEST_F(Address, ThatCannotBePutIntoForceAtTheStartIsReported) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    close();
    sql(file, "UPDATE ipv4 SET gateway = '198.51.100.1'");
    EXPECT_EQ(varoLibInit(), varo::applyFailed);
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(lines.count("the settings of mng0 are stored, but not in force: cannot add the "
                          "default route via 198.51.100.1: Network is unreachable"),
              1);
    EXPECT_EQ(attach("192.0.2.8", "255.255.255.0"), varo::success);
}

TEST_F(Address, ComesBackWithTheInterface) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    cutCable();
    EXPECT_TRUE(lines.await("4 the interface mng0 is gone"));
    EXPECT_EQ(attach("192.0.2.9", "255.255.255.0"), varo::noSuchInterface);
    EXPECT_EQ(detach("192.0.2.7", "255.255.255.0"), varo::noSuchInterface);
    EXPECT_EQ(addRoute("192.0.2.1"), varo::noSuchInterface);
    EXPECT_EQ(deleteRoute("192.0.2.1"), varo::noSuchInterface);
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|192.0.2.1");
    layCable();
    EXPECT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
    EXPECT_EQ(addresses(), "192.0.2.7/24");
}

TEST_F(Address, WaitsForAnInterfaceThatComesAfterTheStart) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    close();
    cutCable();
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(
        lines.count("4 there is no interface mng0 yet; it is put into operation when it comes"), 1);
    shell("ip link add name0 type veth peer name lan0 netns lan && ip link set name0 name mng0");
    EXPECT_TRUE(eventually([] { return addresses() == "192.0.2.7/24"; }));
    EXPECT_THAT(shell("ip link show dev mng0"), HasSubstr(",UP"));
}

TEST_F(Address, RouteComesBackWhenTheInterfaceIsTakenUpAgain) {
    ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    shell("ip link set mng0 down");
    EXPECT_EQ(gateways(), "");
    shell("ip link set mng0 up");
    EXPECT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
}

TEST_F(Address, OfTheHardwareIsRead) {
    shell("ip link set mng0 address 02:00:00:12:34:56");
    std::array<unsigned char, 6> mac{};
    EXPECT_EQ(varoGetIfcMAC("mng0", mac.data()), varo::success);
    EXPECT_EQ(mac, (std::array<unsigned char, 6>{2, 0, 0, 0x12, 0x34, 0x56}));
    shell("ip tuntap add dev tun0 mode tun");
    EXPECT_EQ(varoGetIfcMAC("tun0", mac.data()), varo::notThere);
    EXPECT_EQ(lines.count("3 varoGetIfcMAC: the interface tun0 has no MAC address"), 1);
    shell("ip link delete tun0");
    EXPECT_EQ(varoGetIfcMAC("nosuch0", mac.data()), varo::noSuchInterface);
    EXPECT_EQ(varoGetIfcMAC("", mac.data()), varo::noSuchInterface);
    EXPECT_EQ(varoGetIfcMAC("a name of more than 15 bytes", mac.data()), varo::noSuchInterface);
    EXPECT_EQ(varoGetIfcMAC(nullptr, mac.data()), varo::invalidArgument);
    EXPECT_EQ(varoGetIfcMAC("mng0", nullptr), varo::invalidArgument);
}

}  // namespace
