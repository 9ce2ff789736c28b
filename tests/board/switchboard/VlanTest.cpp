#include "SwitchTest.h"

#include <array>
#include <cstring>
#include <thread>

namespace {

using namespace switchboard;
using switchtest::mng;
using switchtest::uplink;

using VlanTest = switchtest::SwitchTest;

constexpr zuHandle_t otherDatabase{{0, 0, 0, 0, 0, 0, 0, 1}};

TEST_F(VlanTest, StartsWithTheFactoryState) {
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
    EXPECT_EQ(defaultVlan(), "1 tagged");
    EXPECT_EQ(framework::vlanReporter().ask().managementVlan, 0U);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(filesIn(directory.path()), IsEmpty());
}

TEST_F(VlanTest, MovesTheManagementPort) {
    EXPECT_EQ(create(10), success);
    EXPECT_EQ(find(10), success);
    EXPECT_EQ(remove(1, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 100", "10:"));
    EXPECT_EQ(add(10, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 100", "10: 1"));
    EXPECT_EQ(setPvid(10, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 100", "10: 1*"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(VlanTest, LeavesAndEntersTheSameVlan) {
    EXPECT_EQ(remove(1, mng), success);
    EXPECT_EQ(add(1, mng), success);
    EXPECT_EQ(setPvid(1, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
}

TEST_F(VlanTest, AddsAMemberTwiceWithoutAChange) {
    EXPECT_EQ(add(1, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
    EXPECT_THAT(filesIn(directory.path()), IsEmpty());
}

TEST_F(VlanTest, KeepsThePvidOfAPortThatLeavesAnotherVlan) {
    create(10);
    add(10, mng);
    EXPECT_EQ(remove(10, mng), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
}

TEST_F(VlanTest, KnowsTheIdsOfTheStandardOnly) {
    for (const std::uint32_t vlan : {0U, 4095U, 65536U + 1, 0xFFFFFFFFU}) {
        const std::string reason = fmt::format("{} is no VLAN id: these are 1 to 4094", vlan);
        EXPECT_EQ(find(vlan), invalidVlan);
        EXPECT_EQ(create(vlan), invalidVlan);
        EXPECT_EQ(remove(vlan, mng), invalidVlan);
        EXPECT_EQ(vlanMngWrite(vlan), invalidVlan);
        EXPECT_THAT(log.take(),
                    ElementsAre("3 zuvlanGetVlanInfoId: " + reason, "3 zuvlanCreate: " + reason,
                                "3 zuvlanDelMembership: " + reason, "3 vlanMngWrite: " + reason));
    }
    for (const auto vlan : std::to_array<std::uint16_t>({0, 4095, 65535})) {
        EXPECT_EQ(add(vlan, mng), invalidVlan);
        EXPECT_EQ(setPvid(vlan, mng), invalidVlan);
    }
    EXPECT_EQ(create(4094), success);
    EXPECT_EQ(create(2), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "2:", "4094:"));
}

TEST_F(VlanTest, NeedsTheVlanToExist) {
    EXPECT_EQ(find(7), noSuchVlan);
    EXPECT_EQ(add(7, mng), noSuchVlan);
    EXPECT_EQ(remove(7, mng), noSuchVlan);
    EXPECT_EQ(setPvid(7, mng), noSuchVlan);
    EXPECT_EQ(vlanMngWrite(7), noSuchVlan);
    EXPECT_THAT(log.lines(), ElementsAre("6 zuvlanGetVlanInfoId: VLAN 7 is not in the database",
                                         "6 zuvlanAddMembership: VLAN 7 is not in the database",
                                         "6 zuvlanDelMembership: VLAN 7 is not in the database",
                                         "6 zuvlanSetPvid: VLAN 7 is not in the database",
                                         "6 vlanMngWrite: VLAN 7 is not in the database"));
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
}

TEST_F(VlanTest, DoesNotCreateAVlanTwice) {
    EXPECT_EQ(create(1), vlanExists);
    EXPECT_THAT(log.lines(), ElementsAre("3 zuvlanCreate: VLAN 1 is in the database already"));
}

TEST_F(VlanTest, KnowsItsPorts) {
    for (const int port : {0, 2, -1}) {
        EXPECT_EQ(add(1, port), noSuchPort);
        EXPECT_EQ(remove(1, port), noSuchPort);
        EXPECT_EQ(setPvid(1, port), noSuchPort);
        const std::string reason = fmt::format("the switch has no port {}, only 1 and 100", port);
        EXPECT_THAT(log.take(),
                    ElementsAre("3 zuvlanAddMembership: " + reason,
                                "3 zuvlanDelMembership: " + reason, "3 zuvlanSetPvid: " + reason));
    }
}

TEST_F(VlanTest, APortLeavesOnlyAVlanThatItIsIn) {
    create(10);
    EXPECT_EQ(remove(10, mng), notMember);
    EXPECT_EQ(remove(1, mng), success);
    EXPECT_EQ(remove(1, mng), notMember);
    EXPECT_THAT(log.lines(), ElementsAre("3 zuvlanDelMembership: port 1 is not in VLAN 10",
                                         "3 zuvlanDelMembership: port 1 is not in VLAN 1"));
}

TEST_F(VlanTest, ThePvidIsAVlanThatThePortIsIn) {
    create(10);
    EXPECT_EQ(setPvid(10, mng), notMember);
    EXPECT_THAT(log.lines(), ElementsAre("3 zuvlanSetPvid: port 1 is not in VLAN 10"));
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
}

TEST_F(VlanTest, HasOneDatabase) {
    zuvlanInfo_t info{};
    EXPECT_EQ(zuvlanGetVlanInfoId(otherDatabase, 1, &info), noSuchDatabase);
    EXPECT_EQ(zuvlanCreate(otherDatabase, 10), noSuchDatabase);
    EXPECT_EQ(zuvlanAddMembership(otherDatabase, 1, mng), noSuchDatabase);
    EXPECT_EQ(zuvlanDelMembership(otherDatabase, 1, mng), noSuchDatabase);
    EXPECT_EQ(zuvlanSetPvid(otherDatabase, 1, mng), noSuchDatabase);
    EXPECT_THAT(log.lines(), SizeIs(5));
    EXPECT_EQ(log.lines().at(1), "3 zuvlanCreate: there is no VLAN database but the default one");
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
}

TEST_F(VlanTest, TellsIdAndNumberOfPorts) {
    zuvlanInfo_t info;
    std::memset(&info, 0xA5, sizeof info);
    ASSERT_EQ(zuvlanGetVlanInfoId(switchtest::defaultDatabase, 1, &info), success);
    std::uint32_t values[sizeof info / sizeof(std::uint32_t)];
    std::memcpy(values, &info, sizeof info);
    EXPECT_THAT(values, ElementsAre(1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(zuvlanGetVlanInfoId(switchtest::defaultDatabase, 1, nullptr), invalidArgument);
    EXPECT_THAT(log.lines(), ElementsAre("3 zuvlanGetVlanInfoId: null pointer"));
}

TEST_F(VlanTest, PersistsTheManagementVlan) {
    create(10);
    EXPECT_EQ(vlanMngWrite(10), success);
    EXPECT_EQ(framework::vlanReporter().ask().managementVlan, 10U);
    // Where the port is, is another matter.
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
}

TEST_F(VlanTest, AnswersBeforeItIsConfigured) {
    switchboard::configure({{}, log.receiver()});
    EXPECT_EQ(find(1), notConfigured);
    EXPECT_EQ(create(10), notConfigured);
    EXPECT_EQ(add(1, mng), notConfigured);
    EXPECT_EQ(remove(1, mng), notConfigured);
    EXPECT_EQ(setPvid(1, mng), notConfigured);
    EXPECT_EQ(vlanMngWrite(1), notConfigured);
    EXPECT_EQ(defConnectCheckUplinkConflict(1, false), notConfigured);
    EXPECT_EQ(defConnectReconfigureDefVlan(1, true), notConfigured);
    EXPECT_EQ(mngConnectCheckVlanProfileUplinkNative(1), notConfigured);
    EXPECT_EQ(returnManagementPort(), notConfigured);
    EXPECT_EQ(defConnectGetDefVid(), 1U);
    EXPECT_EQ(defConnectGetDefModeNative(), 0);
    EXPECT_THAT(log.take(), SizeIs(12));
    EXPECT_THROW(framework::vlanReporter().ask(), std::exception);
}

TEST_F(VlanTest, IsUsedByManyThreads) {
    std::vector<std::thread> threads;
    for (std::uint32_t first = 2; first <= 5; ++first) {
        threads.emplace_back([first] {
            for (std::uint32_t vlan = first; vlan < 50; vlan += 4) {
                EXPECT_EQ(create(vlan), success);
                EXPECT_EQ(find(vlan), success);
                EXPECT_EQ(add(static_cast<std::uint16_t>(vlan), uplink), success);
                EXPECT_EQ(defConnectGetDefVid(), 1U);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(vlans(), SizeIs(49));
    restart();
    EXPECT_THAT(vlans(), SizeIs(49));
}

}  // namespace
