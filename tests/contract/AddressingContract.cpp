// What every implementation of the configuration library keeps of the management interface. It has
// one, "mng0", without an address at first.

#include "contract/Environment.h"
#include "support/matchers.h"
#include "varo/varoLib.h"

#include <netinet/in.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::uint32_t address = 0xc000020a;
constexpr std::uint32_t mask = 0xffffff00;
constexpr std::uint32_t neighbour = 0xc0000201;

varoLib_s_interface record(std::uint32_t ipAddr, std::uint32_t netmask, const char* name = "mng0") {
    varoLib_s_interface interface{};
    interface.ipAddr = ipAddr;
    interface.netmask = netmask;
    std::memcpy(interface.name, name, std::strlen(name) + 1);
    return interface;
}

class AddressingContract : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(varoLibInit(), 0);
        varoLib_s_dhcp dhcp{};
        ASSERT_EQ(varoGetDhcp(&dhcp), 0);
        dhcp.updateSelector = 2;
        dhcp.dhcpEnabled = 0;
        ASSERT_EQ(varoUpdateDhcp(&dhcp), 0);
        varoLib_s_interface now = read();
        if (now.ipAddr != 0) {
            now = record(ntohl(now.ipAddr), ntohl(now.netmask));
            ASSERT_EQ(varoDettachIpFromIntf(&now), 0);
        }
    }

    static varoLib_s_interface read() {
        varoLib_s_interface interface = record(0, 0);
        EXPECT_EQ(varoGetInterface(&interface), 0);
        return interface;
    }

    static int attach(std::uint32_t ipAddr, std::uint32_t netmask = mask,
                      const char* name = "mng0") {
        varoLib_s_interface interface = record(ipAddr, netmask, name);
        return varoAttachIpToIntf(&interface);
    }

    static std::uint32_t gateway() {
        varoLib_s_route route{};
        return varoGetRouteByDst(&route) == 0 ? route.gateway : 0;
    }

    Environment environment;
};

TEST_F(AddressingContract, AnAddressIsAttachedInHostOrderAndReadInNetworkOrder) {
    EXPECT_EQ(read().ipAddr, 0U);
    EXPECT_EQ(attach(address), 0);
    EXPECT_EQ(read().ipAddr, htonl(address));
    EXPECT_EQ(read().netmask, htonl(mask));
    varoLib_s_interface interface = record(address, mask);
    EXPECT_EQ(varoDettachIpFromIntf(&interface), 0);
    EXPECT_EQ(read().ipAddr, 0U);
    EXPECT_NE(varoDettachIpFromIntf(&interface), 0);
}

TEST_F(AddressingContract, AnInterfaceThatIsNotThereIsRefused) {
    EXPECT_NE(attach(address, mask, "none0"), 0);
    varoLib_s_interface interface = record(address, mask, "none0");
    EXPECT_NE(varoDettachIpFromIntf(&interface), 0);
    EXPECT_NE(varoGetInterface(&interface), 0);
    unsigned char mac[6] = {};
    EXPECT_NE(varoGetIfcMAC("none0", mac), 0);
}

TEST_F(AddressingContract, TheInterfaceHasAMacAddress) {
    unsigned char mac[6] = {};
    EXPECT_EQ(varoGetIfcMAC("mng0", mac), 0);
    EXPECT_TRUE(std::any_of(std::begin(mac), std::end(mac), [](auto byte) { return byte != 0; }));
}

TEST_F(AddressingContract, TheDefaultRouteGoesWithTheAddress) {
    varoLib_s_route route{};
    EXPECT_NE(varoGetRouteByDst(&route), 0);
    EXPECT_EQ(attach(address), 0);
    route = {};
    route.gateway = neighbour;
    EXPECT_EQ(varoAddRoute(&route), 0);
    EXPECT_EQ(gateway(), neighbour);
    varoLib_s_interface interface = record(address, mask);
    EXPECT_EQ(varoDettachIpFromIntf(&interface), 0);
    EXPECT_EQ(gateway(), 0U);
}

TEST_F(AddressingContract, ARouteIsRemovedOnce) {
    EXPECT_EQ(attach(address), 0);
    varoLib_s_route route{};
    route.gateway = neighbour;
    EXPECT_EQ(varoAddRoute(&route), 0);
    EXPECT_EQ(varoDeleteRoute(&route), 0);
    EXPECT_EQ(gateway(), 0U);
    EXPECT_NE(varoDeleteRoute(&route), 0);
}

TEST_F(AddressingContract, OptionsOfTheDhcpClientAreKept) {
    varoLib_s_dhcp dhcp{};
    EXPECT_EQ(varoGetDhcp(&dhcp), 0);
    dhcp.updateSelector = 2;
    dhcp.vendorClassEnabled = 1;
    dhcp.option82Enabled = 1;
    std::memcpy(dhcp.circuitId, "3/5", 4);
    EXPECT_EQ(varoUpdateDhcp(&dhcp), 0);
    varoLib_s_dhcp kept{};
    EXPECT_EQ(varoGetDhcp(&kept), 0);
    EXPECT_EQ(kept.dhcpEnabled, 0U);
    EXPECT_EQ(kept.vendorClassEnabled, 1U);
    EXPECT_EQ(kept.option82Enabled, 1U);
    EXPECT_STREQ(kept.circuitId, "3/5");
    EXPECT_EQ(varoDhcpRetreatAlrServNotResponding(), 0);
    EXPECT_EQ(varoSendSigToAcs(10), 0);
}

TEST_F(AddressingContract, TheBoardHasAPosition) {
    std::uint32_t position = 0;
    EXPECT_EQ(varoGetMyBoardPos(&position), 0);
    EXPECT_GT(position, 0U);
}

}  // namespace
