// Management VLAN and default VLAN.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"
#include "network/journals.h"

#include <string>

namespace {

using testing::ElementsAreArray;

constexpr int cordProfile = 12;

const std::string noProfile = "checkProfileMode() -> 0";
const std::string profile = "checkProfileMode() -> 1";
const std::string looksUp = trace("setVlan: checking VLAN database");
const std::string option82Off =
    R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=0 circuitId=""})";
const std::string securityRefreshed = "updateMngStaticEntry() -> 0";

/// The port leaves a VLAN.
Entries left(const std::string& vlan) {
    return {trace("setVlan: trying to deleted mng port from vlan: " + vlan),
            "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
            "zuvlanDelMembership(" + vlan + ", 1) -> 0",
            trace("setVlan: mng port (1): deleted from vlan: 0")};
}

/// The port enters a VLAN: by its 16 bits, and told by its id.
Entries entered(const std::string& tag, const std::string& vlan) {
    return {"zuvlanAddMembership(" + tag + ", 1) -> 0",
            trace("setVlan: mng port (1): added to vlan: " + vlan),
            "zuvlanSetPvid(" + tag + ", 1) -> 0",
            trace("setVlan: mng port (1): Pvid set to: " + vlan)};
}

class Vlan : public EntityTest {
protected:
    Vlan() {
        platform.shelf.vlans[100];
        logEverything();
    }

    /// The management VLAN as callers see it.
    unsigned int managementVlan() {
        Network::NetworkInfo info{};
        EXPECT_EQ(entity().getNetworkInfo(&info), 0);
        journal();
        return info.mngVlanId;
    }
    bool isMember(std::uint32_t vlan) { return platform.shelf.vlans[vlan].contains(1); }
};

TEST_F(Vlan, PortIsMoved) {
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0", left("1"),
                               entered("100", "100"), option82Off, noProfile, securityRefreshed)));
    EXPECT_EQ(managementVlan(), 100U);
    EXPECT_FALSE(isMember(1));
    EXPECT_TRUE(isMember(100));
    EXPECT_EQ(platform.shelf.portVlans[1], 100U);
    EXPECT_EQ(platform.shelf.persistedManagementVlan, 0U);
}

TEST_F(Vlan, PortIsMovedWithinItsOwnVlanToo) {
    EXPECT_EQ(networkSetVlan(1), 0);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               noProfile, looksUp, "zuvlanGetVlanInfoId(1) -> 0", left("1"),
                               entered("1", "1"), option82Off, noProfile, securityRefreshed)));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_TRUE(isMember(1));
}

TEST_F(Vlan, MoveIsPersistedInProfileMode) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 0", looksUp,
                               "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"),
                               option82Off, profile, "vlanMngWrite(100) -> 0", securityRefreshed)));
    EXPECT_EQ(platform.shelf.persistedManagementVlan, 100U);
}

TEST_F(Vlan, MoveSucceedsThoughItCannotBePersistedNorSecured) {
    platform.shelf.isInProfileMode = true;
    platform.fail("vlanMngWrite", 5);
    platform.fail("updateMngStaticEntry", 6);
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 0", looksUp,
                    "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"), option82Off,
                    profile, "vlanMngWrite(100) -> 5", "updateMngStaticEntry() -> 6")));
    EXPECT_EQ(managementVlan(), 100U);
}

TEST_F(Vlan, MoveWritesTheNewVlanIntoOption82) {
    platform.addressing.dhcp.option82Enabled = 1;
    put(platform.addressing.dhcp.circuitId, "old");
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId="old"})";
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(
        journal(),
        ElementsAreArray(exclusively(
            noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0", left("1"), entered("100", "100"),
            read,
            exclusively(
                read, R"(getShelfId() -> "3")",
                R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=0 option82=1 circuitId="VANTORIX:3 eth 5:100:"}) -> 0)",
                trace("setOption82: return value: 0")),
            noProfile, securityRefreshed)));
}

TEST_F(Vlan, MoveSucceedsThoughOption82CannotBeWritten) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("varoUpdateDhcp", 6);
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(),
                testing::IsSupersetOf({trace("setOption82: return value: 6"), securityRefreshed}));
    EXPECT_EQ(managementVlan(), 100U);
}

TEST_F(Vlan, ZeroIsNoVlan) {
    EXPECT_EQ(networkSetVlan(0), -1);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(noProfile)));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, ZeroIsCheckedAgainstTheProfileFirst) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetVlan(0), -1);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               profile, "mngConnectCheckVlanProfileUplinkNative(0) -> 0")));
}

TEST_F(Vlan, VlanThatTheProfileRejectsDoesNotReachTheDatabase) {
    platform.shelf.isInProfileMode = true;
    platform.fail("mngConnectCheckVlanProfileUplinkNative", 2);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               profile, "mngConnectCheckVlanProfileUplinkNative(100) -> 2")));
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
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1",
                                             "isActive(12) -> 0")));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_FALSE(platform.shelf.vlans.contains(200));
}

TEST_F(Vlan, MissingVlanIsCreatedWithTheFeature) {
    platform.shelf.activeFeatures.insert(cordProfile);
    EXPECT_EQ(networkSetVlan(200), 0);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1", "isActive(12) -> 1",
                    missing("200"), "zuvlanCreate(200) -> 0", "zuvlanGetVlanInfoId(200) -> 0",
                    left("1"), entered("200", "200"), option82Off, noProfile, securityRefreshed)));
    EXPECT_EQ(managementVlan(), 200U);
}

TEST_F(Vlan, VlanThatIsStillMissingAfterItsCreationIsRefused) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.fail("zuvlanCreate", 4);
    EXPECT_EQ(networkSetVlan(200), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    noProfile, looksUp, "zuvlanGetVlanInfoId(200) -> 1", "isActive(12) -> 1",
                    missing("200"), "zuvlanCreate(200) -> 4", "zuvlanGetVlanInfoId(200) -> 1")));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, ResultOfTheCreationIsNotWhatCounts) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.fail("zuvlanGetVlanInfoId", 3, 1);
    platform.fail("zuvlanCreate", 4);
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 3", "isActive(12) -> 1",
                    missing("100"), "zuvlanCreate(100) -> 4", "zuvlanGetVlanInfoId(100) -> 0",
                    left("1"), entered("100", "100"), option82Off, noProfile, securityRefreshed)));
}

// Moves that break off.

const Entries found = {noProfile, looksUp, "zuvlanGetVlanInfoId(100) -> 0"};

TEST_F(Vlan, PortThatCannotBeFoundIsNotMoved) {
    platform.fail("interfaceMngGet", 3, 1);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               found, trace("setVlan: trying to deleted mng port from vlan: 1"),
                               "interfaceMngGet() -> 3")));
    EXPECT_EQ(managementVlan(), 1U);
}

TEST_F(Vlan, PortThatCannotLeaveItsVlanStaysInIt) {
    platform.fail("zuvlanDelMembership", 4);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               found, trace("setVlan: trying to deleted mng port from vlan: 1"),
                               "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
                               "zuvlanDelMembership(1, 1) -> 4")));
    EXPECT_EQ(managementVlan(), 1U);
    EXPECT_TRUE(isMember(1));
}

TEST_F(Vlan, PortThatCannotEnterTheNewVlanIsInNone) {
    platform.fail("zuvlanAddMembership", 5);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_THAT(journal(), ElementsAreArray(
                               exclusively(found, left("1"), "zuvlanAddMembership(100, 1) -> 5")));
    EXPECT_EQ(managementVlan(), 0U);
    EXPECT_FALSE(isMember(1));
    EXPECT_FALSE(isMember(100));
}

TEST_F(Vlan, PortWithoutItsDefaultVlanKeepsTheMembershipAndCountsAsInNone) {
    platform.fail("zuvlanSetPvid", 6);
    EXPECT_EQ(networkSetVlan(100), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(found, left("1"), "zuvlanAddMembership(100, 1) -> 0",
                                             trace("setVlan: mng port (1): added to vlan: 100"),
                                             "zuvlanSetPvid(100, 1) -> 6")));
    EXPECT_EQ(managementVlan(), 0U);
    EXPECT_TRUE(isMember(100));
}

TEST_F(Vlan, PortThatIsInNoVlanHasNoneToLeave) {
    platform.fail("zuvlanAddMembership", 5, 1);
    EXPECT_EQ(networkSetVlan(100), -1);
    journal();
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               found, trace("setVlan: trying to deleted mng port from vlan: 0"),
                               "interfaceMngGet() -> 0 1", trace("setVlan: mng port id is: 1"),
                               trace("setVlan: mng port (1): deleted from vlan: 0"),
                               entered("100", "100"), option82Off, noProfile, securityRefreshed)));
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
    EXPECT_THAT(
        journal(),
        ElementsAreArray(exclusively(
            profile, "mngConnectCheckVlanProfileUplinkNative(65537) -> 0", looksUp,
            "zuvlanGetVlanInfoId(65537) -> 0", left("1"), entered("1", "65537"), read,
            exclusively(
                read, R"(getShelfId() -> "3")",
                R"(varoUpdateDhcp({selector=2 dhcp=0 vendor=0 option82=1 circuitId="VANTORIX:3 eth 5:65537:"}) -> 0)",
                trace("setOption82: return value: 0")),
            profile, "vlanMngWrite(65537) -> 0", securityRefreshed)));
    EXPECT_EQ(managementVlan(), 65537U);
    EXPECT_EQ(platform.shelf.portVlans[1], 1U);
}

TEST_F(Vlan, LargestNumberIsLoggedAsASignedOne) {
    platform.shelf.activeFeatures.insert(cordProfile);
    platform.shelf.vlans[65535];
    EXPECT_EQ(networkSetVlan(4294967295U), 0);
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(
                               noProfile, looksUp, "zuvlanGetVlanInfoId(4294967295) -> 1",
                               "isActive(12) -> 1", missing("-1"), "zuvlanCreate(4294967295) -> 0",
                               "zuvlanGetVlanInfoId(4294967295) -> 0", left("1"),
                               entered("65535", "-1"), option82Off, noProfile, securityRefreshed)));
    EXPECT_EQ(managementVlan(), 4294967295U);

    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_THAT(journal(),
                testing::IsSupersetOf({trace("setVlan: trying to deleted mng port from vlan: -1"),
                                       std::string("zuvlanDelMembership(4294967295, 1) -> 0")}));
}

// The default VLAN.

std::string entry(const std::string& arguments) {
    return error("setDefVlanMode():1038 Entering function: " + arguments);
}

TEST_F(Vlan, DefaultVlanIsMadeNative) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_THAT(journal(), ElementsAreArray(sequence(
                               entry("defVid=300, defMode=2"),
                               exclusively(profile, "defConnectCheckUplinkConflict(300, true) -> 0",
                                           "defConnectReconfigureDefVlan(300, true) -> 0"))));
    Network::NetworkInfo info{};
    EXPECT_EQ(entity().getNetworkInfo(&info), 0);
    EXPECT_EQ(info.defVid, 300U);
    EXPECT_EQ(info.defVlanMode, 2U);
    journal();
}

TEST_F(Vlan, DefaultVlanIsMadeTaggedByEveryOtherMode) {
    platform.shelf.isInProfileMode = true;
    for (const auto& [mode, text] : {std::pair{0U, "0"}, {1U, "1"}, {3U, "3"}, {~0U, "-1"}}) {
        platform.shelf.isDefaultVlanNative = true;
        EXPECT_EQ(networkSetDefVlanMode(300, mode), 0);
        EXPECT_THAT(journal(),
                    ElementsAreArray(sequence(
                        entry(std::string("defVid=300, defMode=") + text),
                        exclusively(profile, "defConnectCheckUplinkConflict(300, false) -> 0",
                                    "defConnectReconfigureDefVlan(300, false) -> 0"))));
        EXPECT_FALSE(platform.shelf.isDefaultVlanNative);
    }
}

TEST_F(Vlan, DefaultVlanIsNotCutToSixteenBits) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(4294967295U, 2), 0);
    EXPECT_THAT(journal(),
                ElementsAreArray(sequence(
                    entry("defVid=-1, defMode=2"),
                    exclusively(profile, "defConnectCheckUplinkConflict(4294967295, true) -> 0",
                                "defConnectReconfigureDefVlan(4294967295, true) -> 0"))));
}

TEST_F(Vlan, DefaultVlanIsRefusedOutsideProfileMode) {
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(sequence(entry("defVid=300, defMode=2"),
                                          exclusively(noProfile, error("setDefVlanMode():1047")))));
}

TEST_F(Vlan, DefaultVlanZeroIsRefusedBeforeTheProfileIsAskedFor) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(0, 1), -1);
    EXPECT_THAT(journal(), ElementsAreArray(sequence(entry("defVid=0, defMode=1"),
                                                     exclusively(error("setDefVlanMode():1047")))));
}

TEST_F(Vlan, DefaultVlanInConflictWithAnUplinkIsReported) {
    platform.shelf.isInProfileMode = true;
    platform.fail("defConnectCheckUplinkConflict", -17);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(sequence(
                    entry("defVid=300, defMode=2"),
                    exclusively(profile, "defConnectCheckUplinkConflict(300, true) -> -17",
                                error("setDefVlanMode: VLAN conflict on network-interface (rv = "
                                      "-17)")))));
    EXPECT_EQ(platform.shelf.defaultVlan, 1U);
}

TEST_F(Vlan, DefaultVlanThatCannotBeReconfiguredIsReported) {
    platform.shelf.isInProfileMode = true;
    platform.fail("defConnectReconfigureDefVlan", 9);
    EXPECT_EQ(networkSetDefVlanMode(300, 1), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(sequence(
                    entry("defVid=300, defMode=1"),
                    exclusively(profile, "defConnectCheckUplinkConflict(300, false) -> 0",
                                "defConnectReconfigureDefVlan(300, false) -> 9",
                                error("setDefVlanMode: reconfiguring DEFAULT VLAN failed (rv = "
                                      "9)")))));
    EXPECT_EQ(platform.shelf.defaultVlan, 1U);
}

TEST_F(Vlan, DefaultVlanIsTracedAroundARefusedLock) {
    platform.fail("exclusiveLock", 1);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_THAT(journal(),
                ElementsAreArray(sequence(entry("defVid=300, defMode=2"), refused("exclusiveLock"),
                                          error("setDefVlanMode():1042"))));
}

TEST_F(Vlan, EntryIsTracedAtTheLevelOfFailures) {
    entity().externalMessage("networkBle_severity", "3", nullptr);
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_EQ(journal().front(), entry("defVid=300, defMode=2"));
    entity().externalMessage("networkBle_severity", "2", nullptr);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_EQ(journal().front(), "exclusiveLock");
}

// The shelf's identity.

TEST_F(Vlan, NewIdentityOfTheShelfIsWrittenIntoOption82) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.addressing.dhcp.dhcpEnabled = 1;
    platform.shelf.shelfId = "4";
    entity().onShelfIdVlanChange("not looked at");
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=1 vendor=0 option82=1 circuitId=""})";
    EXPECT_THAT(
        journal(),
        ElementsAreArray(exclusively(
            read,
            exclusively(
                read, R"(getShelfId() -> "4")",
                R"(varoUpdateDhcp({selector=2 dhcp=1 vendor=0 option82=1 circuitId="VANTORIX:4 eth 5:1:"}) -> 0)",
                trace("setOption82: return value: 0")))));
}

TEST_F(Vlan, NewIdentityOfTheShelfWritesNothingWhileOption82IsOff) {
    entity().onShelfIdVlanChange("4");
    EXPECT_THAT(journal(), ElementsAreArray(exclusively(option82Off)));
}

TEST_F(Vlan, NewIdentityOfTheShelfIsLostWhenTheLockIsRefused) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("exclusiveLock", 1);
    entity().onShelfIdVlanChange("4");
    EXPECT_THAT(journal(), ElementsAreArray(refused("exclusiveLock")));
}

TEST_F(Vlan, NewIdentityOfTheShelfIsLostWhenTheInnerLockIsRefused) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("exclusiveLock", 1, 1, 1);
    entity().onShelfIdVlanChange("4");
    EXPECT_THAT(journal(),
                ElementsAreArray(exclusively(
                    R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId=""})",
                    refused("exclusiveLock"))));
}

}  // namespace
