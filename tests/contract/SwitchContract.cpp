// What every implementation of the shelf's switch and the interface registry keeps.

#include "contract/Environment.h"
#include "framework/PortSecurity.h"
#include "platform/interfaces.h"
#include "platform/vlan.h"
#include "platform/zubridge.h"
#include "support/matchers.h"

#include <string>

namespace {

constexpr int managementPort = 1;

class SwitchContract : public testing::Test {
protected:
    static bool exists(std::uint32_t vlan) {
        zuvlanInfo_t info{};
        return zuvlanGetVlanInfoId({}, vlan, &info) == 0;
    }

    Environment environment;
};

TEST_F(SwitchContract, TheManagementPortHasANameOfFourCharacters) {
    int port = 0;
    EXPECT_EQ(interfaceMngGet(&port), 0);
    EXPECT_EQ(port, managementPort);
    char name[16] = "untouched";
    EXPECT_NE(interfaceLinuxnameGet(port, 4, name), 0);
    EXPECT_NE(interfaceLinuxnameGet(port, -1, name), 0);
    EXPECT_NE(interfaceLinuxnameGet(4711, sizeof name, name), 0);
    EXPECT_STREQ(name, "untouched");
    EXPECT_EQ(interfaceLinuxnameGet(port, 5, name), 0);
    EXPECT_STREQ(name, "mng0");
}

TEST_F(SwitchContract, ADatabaseBeginsWithTheDefaultVlan) {
    EXPECT_TRUE(exists(1));
    EXPECT_FALSE(exists(10));
    EXPECT_EQ(defConnectGetDefVid(), 1U);
    EXPECT_EQ(defConnectGetDefModeNative(), 0);
}

TEST_F(SwitchContract, AVlanIsThereOnceItIsCreated) {
    EXPECT_NE(zuvlanAddMembership({}, 10, managementPort), 0);
    EXPECT_NE(zuvlanDelMembership({}, 10, managementPort), 0);
    EXPECT_NE(zuvlanSetPvid({}, 10, managementPort), 0);
    EXPECT_EQ(zuvlanCreate({}, 10), 0);
    EXPECT_TRUE(exists(10));
    EXPECT_EQ(zuvlanDelMembership({}, 1, managementPort), 0);
    EXPECT_EQ(zuvlanAddMembership({}, 10, managementPort), 0);
    EXPECT_EQ(zuvlanSetPvid({}, 10, managementPort), 0);
    EXPECT_EQ(vlanMngWrite(10), 0);
    EXPECT_EQ(PortSecurity::instance().updateMngStaticEntry(), 0);
}

TEST_F(SwitchContract, TheDefaultVlanCanBeChanged) {
    EXPECT_EQ(zuvlanCreate({}, 20), 0);
    EXPECT_EQ(defConnectCheckUplinkConflict(20, true), 0);
    EXPECT_EQ(defConnectReconfigureDefVlan(20, true), 0);
    EXPECT_EQ(defConnectGetDefVid(), 20U);
    EXPECT_NE(defConnectGetDefModeNative(), 0);
    EXPECT_EQ(defConnectReconfigureDefVlan(1, false), 0);
    EXPECT_EQ(defConnectGetDefVid(), 1U);
    EXPECT_EQ(defConnectGetDefModeNative(), 0);
}

TEST_F(SwitchContract, TheBridgeKeepsTheOntsVlan) {
    zubridge& bridge = zubridge::instance();
    EXPECT_EQ(bridge.gponOntMngVlanSet(33), 0);
    unsigned int vlan = 0;
    EXPECT_EQ(bridge.gponOntMngVlanGet(&vlan), 0);
    EXPECT_EQ(vlan, 33U);
}

}  // namespace
