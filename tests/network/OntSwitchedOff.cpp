// Management interface of the integrated ONT: failures on its ways on and off, and its VLAN beside
// that of the management port.

#include "network/OntTest.h"

#include <cerrno>
#include <optional>

namespace {

/// A way to switch it, and what has been done when its flags are read.
struct Way {
    std::string name;
    unsigned int address;
    Entries begun;
    std::optional<std::uint32_t> addressThen;
};

/// On its way either on or off.
class OntSwitched : public OntTest, public testing::WithParamInterface<Way> {
protected:
    OntSwitched() {
        if (GetParam().address == 0) {
            platform.ont.address = ontAddress;
            platform.ont.netmask = ontMask;
        }
    }

    /// Fails to switch it, by the steps behind the address.
    void expectFailure(const Entries& steps) {
        EXPECT_EQ(networkSetOntMng(GetParam().address, ontMask, 77), -1);
        EXPECT_JOURNAL(boardsInfoRead, opened, GetParam().begun, steps, closed);
        EXPECT_EQ(platform.ont.address, GetParam().addressThen) << "what is done is not taken back";
        EXPECT_EQ(platform.ont.vlanId, 4000U);
    }
};

INSTANTIATE_TEST_SUITE_P(, OntSwitched,
                         testing::Values(Way{"On", ontAddress, {addressSet, maskSet}, ontAddress},
                                         Way{"Off", 0, {addressCleared}, std::nullopt}),
                         [](const auto& way) { return way.param.name; });

TEST_P(OntSwitched, FlagsThatCannotBeReadAreReported) {
    platform.fail("ioctl SIOCGIFFLAGS", ENODEV);
    expectFailure({R"(ioctl(1000, SIOCGIFFLAGS, "ont0") -> errno 19)",
                   error("setOntMng: Could not read the flags. Errorcode : 19 No such device")});
    EXPECT_TRUE(isUp());
}

TEST_P(OntSwitched, ThatCannotBeTakenDownIsReported) {
    platform.fail("ioctl SIOCSIFFLAGS", EPERM);
    expectFailure(
        {flagsRead, R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1042) -> errno 1)", flagsRefused});
    EXPECT_TRUE(isUp());
}

TEST_P(OntSwitched, MacThatCannotBeReadIsReportedAndItStaysDown) {
    platform.fail("mngSystemMacGet", 5);
    expectFailure({flagsRead, setDown, "mngSystemMacGet() -> 5",
                   error("setOntMng: Could not read the mac. ")});
    EXPECT_FALSE(isUp());
}

TEST_P(OntSwitched, MacThatCannotBeSetIsReportedAndItStaysDown) {
    platform.ont.systemMac = {0, 1, 0x0a, 0x7f, 0x80, 0xff};
    platform.fail("ioctl SIOCSIFHWADDR", EADDRNOTAVAIL);
    expectFailure({flagsRead, setDown, systemMacRead,
                   R"(ioctl(1000, SIOCSIFHWADDR, "ont0" 1 00:01:0a:7f:80:ff) -> errno 99)",
                   error("setOntMng: Could not set the mac. Errorcode : 99 Cannot assign requested "
                         "address"),
                   error("setOntMng: Error seting mac 00:01:0a:7f:80:ff")});
    EXPECT_FALSE(isUp());
}

class OntSwitchedOff : public OntTest {
protected:
    OntSwitchedOff() {
        platform.ont.address = ontAddress;
        platform.ont.netmask = ontMask;
    }
};

TEST_F(OntSwitchedOff, VlanThatCannotBeStoredIsReportedByItsIdleNumber) {
    platform.fail("gponOntMngVlanSet", 5);
    EXPECT_EQ(networkSetOntMng(0, ontMask, 77), -1);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressCleared, flagsRead, setDown, systemMacRead,
                   macSet, "gponOntMngVlanSet(1) -> 5",
                   error("setOntMng: Could not set the vlan 1."), closed);
    EXPECT_EQ(platform.ont.address, std::nullopt);
    EXPECT_EQ(platform.ont.vlanId, 4000U);
    EXPECT_FALSE(isUp());
}

TEST_F(OntSwitchedOff, WithoutASocketTheFirstRequestFails) {
    platform.fail("socket", EMFILE);
    EXPECT_EQ(networkSetOntMng(0, ontMask, 77), -1);
    EXPECT_JOURNAL(
        boardsInfoRead, "socket(2, 2, 0) -> errno 24",
        R"(ioctl(-1, SIOCSIFADDR, "ont0" 2 0.0.0.0:0) -> errno 9)",
        error("setOntMng: Could not set the ip to 0x0. Errorcode : 9 Bad file descriptor"));
    EXPECT_EQ(platform.ont.address, ontAddress);
}

// The management port's VLAN, after it was moved.

using OntVlan = OntTest;

/// What is said of a VLAN that the management port is in.
Entries refusedVlan(const std::string& vlan) {
    return {logged("4", "setOntMng: ont0 vlan is the same as managment port one (" + vlan + ")."),
            "close(0) -> 0"};
}

TEST_F(OntVlan, IsComparedWithTheOneThatTheManagementPortWasMovedTo) {
    platform.shelf.vlans[100];
    ASSERT_EQ(networkSetVlan(100), 0);
    entity().externalMessage("networkBle_severity", "4", nullptr);
    journal();
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 100), -1);
    EXPECT_JOURNAL(boardsInfoRead, refusedVlan("100"));
    EXPECT_EQ(platform.ont.address, std::nullopt);
    EXPECT_EQ(platform.ont.vlanId, 4000U);

    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 1), 0) << "which the port has left";
    EXPECT_JOURNAL(boardsInfoRead, opened, addressSet, maskSet, flagsRead, setDown, systemMacRead,
                   macSet, setUp, "gponOntMngVlanSet(1) -> 0", closed);
}

TEST_F(OntVlan, ZeroIsTheManagementPortsWhileThatIsInNone) {
    platform.fail("zuvlanAddMembership", 5);
    ASSERT_EQ(networkSetVlan(1), -1);
    entity().externalMessage("networkBle_severity", "4", nullptr);
    journal();
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 0), -1);
    EXPECT_JOURNAL(boardsInfoRead, refusedVlan("0"));
}

}  // namespace
