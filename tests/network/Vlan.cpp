// Management VLAN.

#include "network/VlanTest.h"

namespace {

using Vlan = VlanTest;

TEST_F(Vlan, PortIsMoved) {
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0", left("1"),
                               entered("100", "100"), option82Off, noProfile, securityRefreshed));
    EXPECT_EQ(managementVlan(), 100U);
    EXPECT_FALSE(isMember(1));
    EXPECT_TRUE(isMember(100));
    EXPECT_EQ(platform.shelf.portVlans[1], 100U);
    EXPECT_EQ(platform.shelf.persistedManagementVlan, 0U);
}

TEST_F(Vlan, PortIsMovedWithinItsOwnVlanToo) {
    EXPECT_EQ(networkSetVlan(1), 0);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(1) -> 0", left("1"),
                               entered("1", "1"), option82Off, noProfile, securityRefreshed));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_TRUE(isMember(1));
}

TEST_F(Vlan, MoveIsPersistedInProfileMode) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 0", looksUp,
                               "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"),
                               option82Off, profile, "vlanMngWrite(100) -> 0", securityRefreshed));
    EXPECT_EQ(platform.shelf.persistedManagementVlan, 100U);
}

TEST_F(Vlan, MoveSucceedsThoughItCannotBePersistedNorSecured) {
    platform.shelf.isInProfileMode = true;
    platform.fail("vlanMngWrite", 5);
    platform.fail("updateMngStaticEntry", 6);
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 0", looksUp,
                               "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"),
                               option82Off, profile, "vlanMngWrite(100) -> 5",
                               "updateMngStaticEntry() -> 6"));
    EXPECT_EQ(managementVlan(), 100U);
}

TEST_F(Vlan, MoveWritesTheNewVlanIntoOption82) {
    platform.addressing.dhcp.option82Enabled = 1;
    put(platform.addressing.dhcp.circuitId, "old");
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId="old"})";
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(
        noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"), read,
        exclusively(
            read, R"(getShelfId() -> "3")",
            dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1", "VANTORIX:3 eth 5:100:")),
        noProfile, securityRefreshed));
}

/// Option 82 is on, in profile mode.
class VlanInOption82 : public VlanTest {
protected:
    VlanInOption82() {
        platform.shelf.isInProfileMode = true;
        platform.addressing.dhcp.option82Enabled = 1;
    }

    /// The move succeeds, whatever becomes of option 82.
    void expectMove(const Entries& option82) {
        EXPECT_EQ(networkSetVlan(100), 0);
        EXPECT_JOURNAL(exclusively(profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 0",
                                   looksUp, "zuvlanGetVlanInfoId(100) -> 0", left("1"),
                                   entered("100", "100"), option82, profile,
                                   "vlanMngWrite(100) -> 0", securityRefreshed));
        EXPECT_EQ(managementVlan(), 100U);
        EXPECT_EQ(platform.shelf.persistedManagementVlan, 100U);
    }

    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId=""})";
    const std::string written =
        R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=0 option82=1 circuitId="VANTORIX:3 eth 5:100:"}))";
};

TEST_F(VlanInOption82, IsNotWrittenAndTheMoveSucceeds) {
    platform.fail("varoUpdateDhcp", 6);
    expectMove(sequence(read, exclusively(read, R"(getShelfId() -> "3")", written + " -> 6",
                                          trace("setOption82: return value: 6"))));
    EXPECT_STREQ(platform.addressing.dhcp.circuitId, "");
}

TEST_F(VlanInOption82, IsNotWrittenUnderARefusedLockAndTheMoveSucceeds) {
    platform.fail("exclusiveLock", 1, 1, 1);
    expectMove(sequence(read, refused("exclusiveLock")));
}

TEST_F(VlanInOption82, IsNotWrittenOverARecordThatCannotBeReadAndTheMoveSucceeds) {
    platform.fail("varoGetDhcp", 5, 1);
    expectMove({"varoGetDhcp() -> 5"});
}

TEST_F(Vlan, ZeroIsNoVlan) {
    EXPECT_EQ(networkSetVlan(0), -1);
    EXPECT_JOURNAL(exclusively(noProfile));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, ZeroIsCheckedAgainstTheProfileFirst) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetVlan(0), -1);
    EXPECT_JOURNAL(exclusively(profile, "mngConnectCheckVlanProfileUplinkNative(0) -> 0"));
}

TEST_F(Vlan, VlanThatTheProfileRejectsDoesNotReachTheDatabase) {
    platform.shelf.isInProfileMode = true;
    platform.fail("mngConnectCheckVlanProfileUplinkNative", 2);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_JOURNAL(exclusively(profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 2"));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, RulesOfTheProfileDoNotCountOutsideOfIt) {
    platform.fail("mngConnectCheckVlanProfileUplinkNative", 2);
    EXPECT_EQ(networkSetVlan(100), 0);
    journal();
}

// A VLAN that is not in the database.

/// This message alone has no line end.
std::string missing(const std::string& vlan) {
    return R"(syslog(7, "[networkBLE]: setVlan: VLAN )" + vlan +
           R"( not in DB. Will add and check again."))";
}

TEST_F(Vlan, MissingVlanIsRefusedWithoutTheFeature) {
    for (const int feature : {11, 13}) {
        platform.shelf.activeFeatures.insert(feature);
    }
    EXPECT_EQ(networkSetVlan(200), -1);
    EXPECT_JOURNAL(
        exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1", "isActive(12) -> 0"));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_FALSE(platform.shelf.vlans.contains(200));
}

TEST_F(Vlan, MissingVlanIsCreatedWithTheFeature) {
    platform.shelf.activeFeatures.insert(cordProfile);
    EXPECT_EQ(networkSetVlan(200), 0);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1",
                               "isActive(12) -> 1", missing("200"), "zuvlanCreate(200) -> 0",
                               "zuvlanGetVlanInfoId(200) -> 0", left("1"), entered("200", "200"),
                               option82Off, noProfile, securityRefreshed));
    EXPECT_EQ(managementVlan(), 200U);
}

TEST_F(Vlan, VlanThatIsStillMissingAfterItsCreationIsRefused) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.fail("zuvlanCreate", 4);
    EXPECT_EQ(networkSetVlan(200), -1);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1",
                               "isActive(12) -> 1", missing("200"), "zuvlanCreate(200) -> 4",
                               "zuvlanGetVlanInfoId(200) -> 1"));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, ResultOfTheCreationIsNotWhatCounts) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.fail("zuvlanGetVlanInfoId", 3, 1);
    platform.fail("zuvlanCreate", 4);
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 3",
                               "isActive(12) -> 1", missing("100"), "zuvlanCreate(100) -> 4",
                               "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"),
                               option82Off, noProfile, securityRefreshed));
}

// Moves that break off.

const Entries found = {noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0"};

TEST_F(Vlan, PortThatCannotBeFoundIsNotMoved) {
    platform.fail("interfaceMngGet", 3, 1);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_JOURNAL(exclusively(found, trace("setVlan: trying to deleted mng port from vlan: 1"),
                               "interfaceMngGet() -> 3"));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, PortThatCannotLeaveItsVlanStaysInIt) {
    platform.fail("zuvlanDelMembership", 4);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_JOURNAL(exclusively(found, trace("setVlan: trying to deleted mng port from vlan: 1"),
                               "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
                               "zuvlanDelMembership(1, 1) -> 4"));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_TRUE(isMember(1));
}

TEST_F(Vlan, PortThatCannotEnterTheNewVlanIsInNone) {
    platform.fail("zuvlanAddMembership", 5);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_JOURNAL(exclusively(found, left("1"), "zuvlanAddMembership(100, 1) -> 5"));
    EXPECT_EQ(managementVlan(), 0U);
    EXPECT_FALSE(isMember(1));
    EXPECT_FALSE(isMember(100));
}

TEST_F(Vlan, PortWithoutItsDefaultVlanKeepsTheMembershipAndCountsAsInNone) {
    platform.fail("zuvlanSetPvid", 6);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_JOURNAL(exclusively(found, left("1"), "zuvlanAddMembership(100, 1) -> 0",
                               trace("setVlan: mng port (1): added to vlan: 100"),
                               "zuvlanSetPvid(100, 1) -> 6"));
    EXPECT_EQ(managementVlan(), 0U);
    EXPECT_TRUE(isMember(100));
}

TEST_F(Vlan, PortThatIsInNoVlanHasNoneToLeave) {
    platform.fail("zuvlanAddMembership", 5, 1);
    EXPECT_EQ(networkSetVlan(100), -1);
    journal();
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_JOURNAL(exclusively(found, trace("setVlan: trying to deleted mng port from vlan: 0"),
                               "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
                               trace("setVlan: mng port (1): deleted from vlan: 0"),
                               entered("100", "100"), option82Off, noProfile, securityRefreshed));
    EXPECT_EQ(managementVlan(), 100U);
}

// Membership and port VLAN take 16 bits, everything else the whole number.

TEST_F(Vlan, NumberBeyondSixteenBitsIsCutForThePortOnly) {
    platform.shelf.isInProfileMode = true;
    platform.shelf.vlans[65537];
    platform.addressing.dhcp.option82Enabled = 1;
    EXPECT_EQ(networkSetVlan(65537), 0);
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId=""})";
    EXPECT_JOURNAL(exclusively(
        profile, "mngConnectCheckVlanProfileUplinkNative(65537) -> 0", looksUp,
        "zuvlanGetVlanInfoId(65537) -> 0", left("1"), entered("1", "65537"), read,
        exclusively(
            read, R"(getShelfId() -> "3")",
            dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1", "VANTORIX:3 eth 5:65537:")),
        profile, "vlanMngWrite(65537) -> 0", securityRefreshed));
    EXPECT_EQ(managementVlan(), 65537U);
    EXPECT_EQ(platform.shelf.portVlans[1], 1U);
}

TEST_F(Vlan, LargestNumberIsLoggedAsASignedOne) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.shelf.vlans[65535];
    EXPECT_EQ(networkSetVlan(4294967295U), 0);
    EXPECT_JOURNAL(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(4294967295) -> 1",
                               "isActive(12) -> 1", missing("-1"), "zuvlanCreate(4294967295) -> 0",
                               "zuvlanGetVlanInfoId(4294967295) -> 0", left("1"),
                               entered("65535", "-1"), option82Off, noProfile, securityRefreshed));
    EXPECT_EQ(managementVlan(), 4294967295U);

    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(),
                testing::IsSupersetOf({trace("setVlan: trying to deleted mng port from vlan: -1"),
                                       std::string("zuvlanDelMembership(4294967295, 1) -> 0")}));
}

}  // namespace
