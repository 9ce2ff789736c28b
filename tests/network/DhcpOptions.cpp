// Vendor class and option 82 of the DHCP client.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <string>

namespace {

using testing::IsEmpty;

const std::string recordRead =
    R"(varoGetDhcp() -> 0 {selector=9 dhcp=0 vendor=0 option82=0 circuitId="kept"})";

class DhcpOptions : public EntityTest {
protected:
    DhcpOptions() {
        platform.addressing.dhcp.updateSelector = 9;
        put(platform.addressing.dhcp.circuitId, "kept");
        logEverything();
    }

    varoLib_s_dhcp& record() { return platform.addressing.dhcp; }

    /// The circuit id that option 82 is switched on with.
    std::string circuitId() {
        EXPECT_EQ(networkSetOption82(0, 1), 0);
        journal();
        return record().circuitId;
    }
};

// Vendor class.

TEST_F(DhcpOptions, VendorClassWithDhcpSwitchesTheClientOn) {
    EXPECT_EQ(networkSetVendor(1, 1), 0);
    EXPECT_JOURNAL(
        exclusively(recordRead, dhcpWritten("setVendor", "dhcp=1 vendor=1 option82=0", "kept")));
}

TEST_F(DhcpOptions, VendorClassAloneLeavesTheClientOff) {
    EXPECT_EQ(networkSetVendor(0, 1), 0);
    EXPECT_JOURNAL(
        exclusively(recordRead, dhcpWritten("setVendor", "dhcp=0 vendor=1 option82=0", "kept")));
}

struct VendorCase {
    std::uint32_t dhcpBefore;
    int dhcp;
    int vendor;
    std::uint32_t dhcpAfter;
    std::uint32_t vendorAfter;
};

TEST_F(DhcpOptions, VendorClassNeverSwitchesTheClientOff) {
    for (const VendorCase& set : {VendorCase{0, 0, 0, 0, 0},
                                  {0, 0, 1, 0, 1},
                                  {0, 1, 0, 0, 0},
                                  {0, 1, 1, 1, 1},
                                  {1, 0, 0, 1, 0},
                                  {1, 0, 1, 1, 1},
                                  {1, 1, 0, 1, 0},
                                  {1, 1, 1, 1, 1},
                                  {7, 0, 1, 7, 1},
                                  {0, -1, 256, 1, 1}}) {
        record().dhcpEnabled = set.dhcpBefore;
        record().vendorClassEnabled = 1 - set.vendorAfter;
        EXPECT_EQ(networkSetVendor(set.dhcp, set.vendor), 0);
        EXPECT_EQ(record().dhcpEnabled, set.dhcpAfter) << set.dhcp << set.vendor;
        EXPECT_EQ(record().vendorClassEnabled, set.vendorAfter) << set.dhcp << set.vendor;
        EXPECT_EQ(record().updateSelector, 2U);
        EXPECT_STREQ(record().circuitId, "kept");
    }
    journal();
}

TEST_F(DhcpOptions, VendorClassIsWrittenThoughTheRecordCannotBeRead) {
    platform.fail("varoGetDhcp", 5);
    EXPECT_EQ(networkSetVendor(0, 1), 0);
    EXPECT_JOURNAL(exclusively("varoGetDhcp() -> 5",
                               dhcpWritten("setVendor", "dhcp=0 vendor=1 option82=0", "")));
}

TEST_F(DhcpOptions, VendorClassThatCannotBeWrittenFails) {
    platform.fail("varoUpdateDhcp", -6);
    EXPECT_EQ(networkSetVendor(0, 1), -1);
    EXPECT_JOURNAL(exclusively(recordRead,
                               dhcpWritten("setVendor", "dhcp=0 vendor=1 option82=0", "kept", -6)));
    EXPECT_EQ(record().vendorClassEnabled, 0U);
}

// Option 82.

TEST_F(DhcpOptions, Option82IsSwitchedOnWithTheCircuitId) {
    EXPECT_EQ(networkSetOption82(1, 1), 0);
    EXPECT_JOURNAL(exclusively(
        recordRead, R"(getShelfId() -> "3")",
        dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1", "VANTORIX:3 eth 5:1:")));
}

TEST_F(DhcpOptions, Option82IsSwitchedOffWithTheCircuitIdKept) {
    record().option82Enabled = 1;
    EXPECT_EQ(networkSetOption82(0, 0), 0);
    EXPECT_JOURNAL(exclusively(
        R"(varoGetDhcp() -> 0 {selector=9 dhcp=0 vendor=0 option82=1 circuitId="kept"})",
        dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=0", "kept")));
}

TEST_F(DhcpOptions, Option82DoesNotUseItsFirstArgument) {
    for (const int dhcp : {0, 1}) {
        for (const std::uint32_t before : {0U, 1U}) {
            for (const int on : {0, 1}) {
                record().dhcpEnabled = before;
                EXPECT_EQ(networkSetOption82(dhcp, on), 0);
                EXPECT_EQ(record().dhcpEnabled, before);
                EXPECT_EQ(record().option82Enabled, static_cast<std::uint32_t>(on));
            }
        }
    }
    journal();
}

TEST_F(DhcpOptions, Option82IsSwitchedOnByAnyNumberButZero) {
    for (const int on : {1, 2, -1, 256}) {
        record().option82Enabled = 0;
        EXPECT_EQ(networkSetOption82(0, on), 0);
        EXPECT_EQ(record().option82Enabled, 1U) << on;
        EXPECT_STREQ(record().circuitId, "VANTORIX:3 eth 5:1:");
    }
    journal();
}

TEST_F(DhcpOptions, Option82IsWrittenThoughTheRecordCannotBeRead) {
    platform.fail("varoGetDhcp", 5);
    EXPECT_EQ(networkSetOption82(1, 1), 0);
    EXPECT_JOURNAL(exclusively(
        "varoGetDhcp() -> 5", R"(getShelfId() -> "3")",
        dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1", "VANTORIX:3 eth 5:1:")));
}

TEST_F(DhcpOptions, Option82ThatCannotBeWrittenFails) {
    platform.fail("varoUpdateDhcp", 6);
    EXPECT_EQ(networkSetOption82(1, 0), -1);
    EXPECT_JOURNAL(exclusively(
        recordRead, dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=0", "kept", 6)));
}

// The circuit id.

TEST_F(DhcpOptions, CircuitIdNamesShelfBoardAndVlan) {
    platform.addressing.boardPosition = 5;
    platform.shelf.vlans[100];
    EXPECT_EQ(networkSetVlan(100), 0);
    EXPECT_EQ(circuitId(), "VANTORIX:3 eth 5:100:");
}

TEST_F(DhcpOptions, CircuitIdNamesVlanZeroAfterAMoveThatBrokeOff) {
    platform.fail("zuvlanAddMembership", 5);
    EXPECT_EQ(networkSetVlan(1), -1);
    EXPECT_EQ(circuitId(), "VANTORIX:3 eth 5:0:");
}

TEST_F(DhcpOptions, CircuitIdHoldsTheLargestNumbers) {
    platform.addressing.boardPosition = 4294967295U;
    remakeEntity();
    platform.shelf.vlans[4294967295U];
    platform.shelf.vlans[65535];
    EXPECT_EQ(networkSetVlan(4294967295U), 0);
    EXPECT_EQ(circuitId(), "VANTORIX:3 eth 4294967295:4294967295:");
}

TEST_F(DhcpOptions, CircuitIdNamesBoardZeroWhenThePositionIsNotKnown) {
    platform.fail("varoGetMyBoardPos", 4);
    remakeEntity();
    EXPECT_EQ(circuitId(), "VANTORIX:3 eth 0:1:");
}

TEST_F(DhcpOptions, ShelfWithoutAnIdentityLeavesItsPlaceEmpty) {
    platform.shelf.shelfId = "";
    EXPECT_EQ(circuitId(), "VANTORIX: eth 5:1:");
}

TEST_F(DhcpOptions, IdentityIsTextAndNoFormat) {
    platform.shelf.shelfId = "%s%n 100%";
    EXPECT_EQ(circuitId(), "VANTORIX:%s%n 100% eth 5:1:");
}

// The record has room for 149 characters and the terminator; text around the identity takes 18.
TEST_F(DhcpOptions, CircuitIdIsCutToTheRecord) {
    platform.shelf.shelfId = std::string(131, 'x');
    EXPECT_EQ(circuitId(), "VANTORIX:" + std::string(131, 'x') + " eth 5:1:");
    platform.shelf.shelfId = std::string(132, 'x');
    EXPECT_EQ(circuitId(), "VANTORIX:" + std::string(132, 'x') + " eth 5:1");
    platform.shelf.shelfId = std::string(140, 'x');
    EXPECT_EQ(circuitId(), "VANTORIX:" + std::string(140, 'x'));
    platform.shelf.shelfId = std::string(200, 'x');
    EXPECT_EQ(circuitId(), "VANTORIX:" + std::string(140, 'x'));
    EXPECT_EQ(record().option82Enabled, 1U) << "the word behind the text";
}

TEST_F(DhcpOptions, CircuitIdIsFilledInWithoutALock) {
    varoLib_s_dhcp own{7, 7, 7, "old", 7};
    EXPECT_EQ(entity().setCircuitId(&own), 0);
    EXPECT_JOURNAL(R"(getShelfId() -> "3")");
    EXPECT_STREQ(own.circuitId, "VANTORIX:3 eth 5:1:");
    EXPECT_EQ(own.updateSelector, 7U);
    EXPECT_EQ(own.dhcpEnabled, 7U);
    EXPECT_EQ(own.vendorClassEnabled, 7U);
    EXPECT_EQ(own.option82Enabled, 7U);
}

// Option 82 written anew.

TEST_F(DhcpOptions, Option82IsWrittenAnewWhenItIsOn) {
    record().option82Enabled = 7;
    record().dhcpEnabled = 1;
    entity().dhcpCehckBeforeSetOption82(nullptr);
    const std::string read =
        R"(varoGetDhcp() -> 0 {selector=9 dhcp=1 vendor=0 option82=7 circuitId="kept"})";
    EXPECT_JOURNAL(read, exclusively(read, R"(getShelfId() -> "3")",
                                     dhcpWritten("setOption82", "dhcp=1 vendor=0 option82=1",
                                                 "VANTORIX:3 eth 5:1:")));
}

// Whether it is on was read before; what is written with it starts from nothing then.
TEST_F(DhcpOptions, Option82IsWrittenAnewThoughTheRecordCannotBeReadAgain) {
    record().option82Enabled = 7;
    record().dhcpEnabled = 1;
    record().vendorClassEnabled = 1;
    platform.fail("varoGetDhcp", 5, 1, 1);
    entity().dhcpCehckBeforeSetOption82(nullptr);
    EXPECT_JOURNAL(R"(varoGetDhcp() -> 0 {selector=9 dhcp=1 vendor=1 option82=7 circuitId="kept"})",
                   exclusively("varoGetDhcp() -> 5", R"(getShelfId() -> "3")",
                               dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1",
                                           "VANTORIX:3 eth 5:1:")));
    EXPECT_EQ(record().dhcpEnabled, 0U);
    EXPECT_EQ(record().vendorClassEnabled, 0U);
}

// What a failing read leaves is taken for the record.
TEST_F(DhcpOptions, ChangesGoOnWithWhatAFailedReadLeft) {
    platform.fail("varoGetDhcp", 5);
    platform.addressing.dhcpLeftByFailure = varoLib_s_dhcp{8, 1, 1, "left", 7};
    EXPECT_EQ(networkSetVendor(0, 0), 0);
    EXPECT_EQ(networkSetOption82(0, 0), 0);
    entity().dhcpCehckBeforeSetOption82(nullptr);
    EXPECT_JOURNAL(exclusively("varoGetDhcp() -> 5",
                               dhcpWritten("setVendor", "dhcp=1 vendor=0 option82=7", "left")),
                   exclusively("varoGetDhcp() -> 5",
                               dhcpWritten("setOption82", "dhcp=1 vendor=1 option82=0", "left")),
                   "varoGetDhcp() -> 5",
                   exclusively("varoGetDhcp() -> 5", R"(getShelfId() -> "3")",
                               dhcpWritten("setOption82", "dhcp=1 vendor=1 option82=1",
                                           "VANTORIX:3 eth 5:1:")));
}

TEST_F(DhcpOptions, Option82IsNotWrittenWhenItIsOff) {
    entity().dhcpCehckBeforeSetOption82(nullptr);
    EXPECT_JOURNAL(recordRead);
}

TEST_F(DhcpOptions, Option82IsNotWrittenWhenTheRecordCannotBeRead) {
    record().option82Enabled = 1;
    platform.fail("varoGetDhcp", 5);
    entity().dhcpCehckBeforeSetOption82(nullptr);
    EXPECT_JOURNAL("varoGetDhcp() -> 5");
}

TEST_F(DhcpOptions, GivenRecordDecidesInPlaceOfTheOneInForce) {
    varoLib_s_dhcp given{};
    given.option82Enabled = 1;
    entity().dhcpCehckBeforeSetOption82(&given);
    EXPECT_JOURNAL(exclusively(
        recordRead, R"(getShelfId() -> "3")",
        dhcpWritten("setOption82", "dhcp=0 vendor=0 option82=1", "VANTORIX:3 eth 5:1:")));

    record().option82Enabled = 1;
    given.option82Enabled = 0;
    entity().dhcpCehckBeforeSetOption82(&given);
    EXPECT_THAT(journal(), IsEmpty());
}

}  // namespace
