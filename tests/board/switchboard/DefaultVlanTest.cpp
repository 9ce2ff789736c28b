#include "SwitchTest.h"

namespace {

using namespace switchboard;
using switchtest::uplink;

class DefaultVlanTest : public switchtest::SwitchTest {
protected:
    DefaultVlanTest() {
        create(10);
        create(20);
    }

    /// Both calls have to agree.
    static int makeDefault(std::uint32_t vlan, bool native) {
        const int conflict = defConnectCheckUplinkConflict(vlan, native);
        const int result = defConnectReconfigureDefVlan(vlan, native);
        EXPECT_EQ(conflict, result);
        return result;
    }

    /// Makes a VLAN native on the uplink without its being the default VLAN.
    static void makeNative(std::uint16_t vlan) {
        ASSERT_EQ(add(vlan, uplink), success);
        ASSERT_EQ(setPvid(vlan, uplink), success);
    }
};

TEST_F(DefaultVlanTest, IsCarriedByTheUplink) {
    EXPECT_EQ(makeDefault(10, false), success);
    EXPECT_EQ(defaultVlan(), "10 tagged");
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100", "20:"));
    EXPECT_EQ(makeDefault(10, true), success);
    EXPECT_EQ(defaultVlan(), "10 native");
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100*", "20:"));
    EXPECT_EQ(makeDefault(10, false), success);
    EXPECT_EQ(defaultVlan(), "10 tagged");
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100", "20:"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DefaultVlanTest, TakesThePlaceOfTheFormerNativeOne) {
    makeDefault(10, true);
    EXPECT_EQ(makeDefault(20, true), success);
    EXPECT_EQ(defaultVlan(), "20 native");
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100", "20: 100*"));
    EXPECT_EQ(makeDefault(1, false), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100", "20: 100"));
}

TEST_F(DefaultVlanTest, ConflictsWithAnotherNativeVlanWhenItIsNative) {
    makeNative(10);
    EXPECT_EQ(makeDefault(20, true), uplinkConflict);
    const std::string reason =
        "VLAN 20 cannot be the native default VLAN: VLAN 10 is native on the uplink";
    EXPECT_THAT(log.take(), ElementsAre("3 defConnectCheckUplinkConflict: " + reason,
                                        "3 defConnectReconfigureDefVlan: " + reason));
    EXPECT_EQ(defaultVlan(), "1 tagged");
    EXPECT_EQ(makeDefault(20, false), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100*", "20: 100"));
}

TEST_F(DefaultVlanTest, ConflictsWithItselfWhenItIsNativeAndShallBeTagged) {
    makeNative(10);
    EXPECT_EQ(makeDefault(10, false), uplinkConflict);
    const std::string reason =
        "VLAN 10 cannot be the tagged default VLAN: it is native on the uplink";
    EXPECT_THAT(log.take(), ElementsAre("3 defConnectCheckUplinkConflict: " + reason,
                                        "3 defConnectReconfigureDefVlan: " + reason));
    EXPECT_EQ(makeDefault(10, true), success);
    EXPECT_EQ(defaultVlan(), "10 native");
}

TEST_F(DefaultVlanTest, IsFreeToBeNativeOnceTheOtherHasLeftTheUplink) {
    makeNative(10);
    EXPECT_EQ(remove(10, uplink), success);
    EXPECT_EQ(makeDefault(20, true), success);
}

TEST_F(DefaultVlanTest, ExistsInTheDatabase) {
    EXPECT_EQ(makeDefault(30, false), noSuchVlan);
    EXPECT_EQ(makeDefault(0, false), invalidVlan);
    EXPECT_EQ(makeDefault(4095, true), invalidVlan);
    EXPECT_EQ(makeDefault(65537, true), invalidVlan);
    EXPECT_EQ(defaultVlan(), "1 tagged");
}

TEST_F(DefaultVlanTest, CannotBeTakenFromTheUplink) {
    makeDefault(10, true);
    EXPECT_EQ(remove(10, uplink), uplinkConflict);
    EXPECT_EQ(setPvid(1, uplink), uplinkConflict);
    EXPECT_EQ(setPvid(10, uplink), success);
    makeDefault(10, false);
    EXPECT_EQ(remove(10, uplink), uplinkConflict);
    EXPECT_EQ(setPvid(10, uplink), uplinkConflict);
    EXPECT_THAT(
        log.lines(),
        ElementsAre("3 zuvlanDelMembership: the uplink cannot leave VLAN 10, the default VLAN",
                    "3 zuvlanSetPvid: VLAN 1 cannot be native on the uplink: the default VLAN 10 "
                    "is native there",
                    "3 zuvlanDelMembership: the uplink cannot leave VLAN 10, the default VLAN",
                    "3 zuvlanSetPvid: VLAN 10 cannot be native on the uplink: the default VLAN 10 "
                    "is tagged"));
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10: 100", "20:"));
}

TEST_F(DefaultVlanTest, ProfileAdmitsManagementTrafficThatHasATag) {
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(1), success);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(10), success);
    // It may be created afterwards.
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(30), success);
    makeNative(10);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(10), profileConflict);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(20), success);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(0), invalidVlan);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(4095), invalidVlan);
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "3 mngConnectCheckVlanProfileUplinkNative: VLAN 10 cannot carry management traffic: it "
            "is native on the uplink, and not the default VLAN",
            "3 mngConnectCheckVlanProfileUplinkNative: 0 is no VLAN id: these are 1 to 4094",
            "3 mngConnectCheckVlanProfileUplinkNative: 4095 is no VLAN id: these are 1 to 4094"));
}

TEST_F(DefaultVlanTest, ProfileAdmitsTheNativeDefaultVlan) {
    makeDefault(10, true);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(10), success);
}

}  // namespace
