// Default VLAN, and the identity of the shelf.

#include "network/VlanTest.h"

namespace {

using DefaultVlan = VlanTest;

std::string entry(const std::string& arguments) {
    return error("setDefVlanMode():1038 Entering function: " + arguments);
}

TEST_F(DefaultVlan, DefaultVlanIsMadeNative) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_JOURNAL(entry("defVid=300, defMode=2"),
                   exclusively(profile, "defConnectCheckUplinkConflict(300, true) -> 0",
                               "defConnectReconfigureDefVlan(300, true) -> 0"));
    Network::NetworkInfo info{};
    EXPECT_EQ(entity().getNetworkInfo(&info), 0);
    EXPECT_EQ(info.defVid, 300U);
    EXPECT_EQ(info.defVlanMode, 2U);
    journal();
}

TEST_F(DefaultVlan, DefaultVlanIsMadeTaggedByEveryOtherMode) {
    platform.shelf.isInProfileMode = true;
    for (const auto& [mode, text] : {std::pair{0U, "0"}, {1U, "1"}, {3U, "3"}, {~0U, "-1"}}) {
        platform.shelf.isDefaultVlanNative = true;
        EXPECT_EQ(networkSetDefVlanMode(300, mode), 0);
        EXPECT_JOURNAL(entry(std::string("defVid=300, defMode=") + text),
                       exclusively(profile, "defConnectCheckUplinkConflict(300, false) -> 0",
                                   "defConnectReconfigureDefVlan(300, false) -> 0"));
        EXPECT_FALSE(platform.shelf.isDefaultVlanNative);
    }
}

TEST_F(DefaultVlan, DefaultVlanIsNotCutToSixteenBits) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(4294967295U, 2), 0);
    EXPECT_JOURNAL(entry("defVid=-1, defMode=2"),
                   exclusively(profile, "defConnectCheckUplinkConflict(4294967295, true) -> 0",
                               "defConnectReconfigureDefVlan(4294967295, true) -> 0"));
}

TEST_F(DefaultVlan, DefaultVlanIsRefusedOutsideProfileMode) {
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_JOURNAL(entry("defVid=300, defMode=2"),
                   exclusively(noProfile, error("setDefVlanMode():1047")));
}

TEST_F(DefaultVlan, DefaultVlanZeroIsRefusedBeforeTheProfileIsAskedFor) {
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(0, 1), -1);
    EXPECT_JOURNAL(entry("defVid=0, defMode=1"), exclusively(error("setDefVlanMode():1047")));
}

TEST_F(DefaultVlan, DefaultVlanInConflictWithAnUplinkIsReported) {
    platform.shelf.isInProfileMode = true;
    platform.fail("defConnectCheckUplinkConflict", -17);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_JOURNAL(entry("defVid=300, defMode=2"),
                   exclusively(profile, "defConnectCheckUplinkConflict(300, true) -> -17",
                               error("setDefVlanMode: VLAN conflict on network-interface (rv = "
                                     "-17)")));
    EXPECT_EQ(platform.shelf.defaultVlan, 1U);
}

TEST_F(DefaultVlan, DefaultVlanThatCannotBeReconfiguredIsReported) {
    platform.shelf.isInProfileMode = true;
    platform.fail("defConnectReconfigureDefVlan", 9);
    EXPECT_EQ(networkSetDefVlanMode(300, 1), -1);
    EXPECT_JOURNAL(entry("defVid=300, defMode=1"),
                   exclusively(profile, "defConnectCheckUplinkConflict(300, false) -> 0",
                               "defConnectReconfigureDefVlan(300, false) -> 9",
                               error("setDefVlanMode: reconfiguring DEFAULT VLAN failed (rv = "
                                     "9)")));
    EXPECT_EQ(platform.shelf.defaultVlan, 1U);
}

TEST_F(DefaultVlan, DefaultVlanIsTracedAroundARefusedLock) {
    platform.fail("exclusiveLock", 1);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), -1);
    EXPECT_JOURNAL(entry("defVid=300, defMode=2"), refused("exclusiveLock"),
                   error("setDefVlanMode():1042"));
}

TEST_F(DefaultVlan, EntryIsTracedAtTheLevelOfFailures) {
    entity().externalMessage("networkBle_severity", "3", nullptr);
    platform.shelf.isInProfileMode = true;
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_EQ(journal().front(), entry("defVid=300, defMode=2"));
    entity().externalMessage("networkBle_severity", "2", nullptr);
    EXPECT_EQ(networkSetDefVlanMode(300, 2), 0);
    EXPECT_EQ(journal().front(), "exclusiveLock");
}

// The shelf's identity.

using ShelfIdentity = VlanTest;

TEST_F(ShelfIdentity, NewIdentityOfTheShelfIsWrittenIntoOption82) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.addressing.dhcp.dhcpEnabled = 1;
    platform.shelf.shelfId = "4";
    entity().onShelfIdVlanChange("not looked at");
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=1 vendor=0 option82=1 circuitId=""})";
    EXPECT_JOURNAL(
        exclusively(read, exclusively(read, R"(getShelfId() -> "4")",
                                      dhcpWritten("setOption82", "dhcp=1 vendor=0 option82=1",
                                                  "VANTORIX:4 eth 5:1:"))));
}

TEST_F(ShelfIdentity, NewIdentityOfTheShelfWritesNothingWhileOption82IsOff) {
    entity().onShelfIdVlanChange("4");
    EXPECT_JOURNAL(exclusively(option82Off));
}

TEST_F(ShelfIdentity, NewIdentityOfTheShelfIsLostWhenTheLockIsRefused) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("exclusiveLock", 1);
    entity().onShelfIdVlanChange("4");
    EXPECT_JOURNAL(refused("exclusiveLock"));
}

TEST_F(ShelfIdentity, NewIdentityOfTheShelfIsLostWhenTheInnerLockIsRefused) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("exclusiveLock", 1, 1, 1);
    entity().onShelfIdVlanChange("4");
    EXPECT_JOURNAL(
        exclusively(R"(varoGetDhcp() -> 0 {selector=0 dhcp=0 vendor=0 option82=1 circuitId=""})",
                    refused("exclusiveLock")));
}

}  // namespace
