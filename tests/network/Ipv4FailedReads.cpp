// What failing reads leave behind is not taken for information about the management interface.

#include "network/Ipv4Test.h"

namespace {

using testing::Each;

using Ipv4FailedReads = Ipv4Test;

TEST_F(Ipv4FailedReads, DhcpRecordThatWasLeftIsDropped) {
    platform.fail("varoGetDhcp", 5);
    for (const std::uint32_t left : {0U, 1U}) {
        platform.addressing.dhcpLeftByFailure = {left, left, left, "left", left};
        const Network::NetworkInfo info = infoOverOldValues();
        EXPECT_JOURNAL(infoRead(addressRead, dhcpUnread("5")));
        EXPECT_EQ(info.dhcpEnabled, 1U);
        EXPECT_EQ(info.vendorClassEnabled, 0U);
        EXPECT_EQ(info.option82Enabled, 0U);
    }
}

TEST_F(Ipv4FailedReads, MacThatWasLeftIsDropped) {
    platform.fail("varoGetIfcMAC", 5);
    platform.addressing.macLeftByFailure = {6, 6, 6, 6, 6, 6};
    const Network::NetworkInfo info = infoOverOldValues();
    journal();
    EXPECT_THAT(info.macAddr, Each(0));
    EXPECT_EQ(info.ipAddr, oldAddress);
}

TEST_F(Ipv4FailedReads, AddressThatWasLeftIsDropped) {
    platform.fail("varoGetInterface", 5);
    platform.addressing.addressLeftByFailure = {newAddress, 0xffff0000};
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(infoRead(R"(varoGetInterface("mng0") -> 5)"));
    EXPECT_EQ(info.ipAddr, 0U);
    EXPECT_EQ(info.netmask, 0U);
    EXPECT_THAT(info.macAddr, testing::ElementsAre(2, 0, 0, 0, 0, 7));
}

// To an address that is not known, nothing is equal but none.
TEST_F(Ipv4FailedReads, AddressThatWasLeftIsNotTheOneInPlace) {
    platform.fail("varoGetInterface", 5);
    platform.addressing.addressLeftByFailure = {newAddress, mask};
    EXPECT_EQ(networkSetIp(newAddress, mask), 0);
    EXPECT_THAT(journal(), testing::Contains(
                               R"(varoAttachIpToIntf({198.51.100.10/255.255.255.0 "mng0"}) -> 0)"));
    EXPECT_EQ(platform.addressing.interfaces["mng0"].address, newAddress);
}

}  // namespace
