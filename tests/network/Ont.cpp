// Management interface of the integrated ONT.

#include "network/OntTest.h"

#include <cerrno>

namespace {

using testing::ElementsAreArray;

using Ont = OntTest;

TEST_F(Ont, IsSwitchedOnWithAddressMaskMacAndVlan) {
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), 0);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressSet, maskSet, flagsRead, setDown, systemMacRead,
                   macSet, setUp, vlanSet, closed);
    EXPECT_EQ(platform.ont.address, ontAddress);
    EXPECT_EQ(platform.ont.netmask, ontMask);
    EXPECT_EQ(platform.ont.mac, platform.ont.systemMac);
    EXPECT_TRUE(isUp());
    EXPECT_EQ(platform.ont.vlanId, 77U);
}

TEST_F(Ont, IsBroughtUpEvenIfItWasDown) {
    platform.ont.flags = 0x1002;
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), 0);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressSet, maskSet, flagsRead,
                   R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1002) -> 0)", systemMacRead, macSet,
                   R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1003) -> 0)", vlanSet, closed);
}

TEST_F(Ont, IsSwitchedOffWithoutAnAddressWhateverTheRest) {
    platform.ont.address = ontAddress;
    platform.ont.netmask = ontMask;
    EXPECT_EQ(networkSetOntMng(0, 0xffff0000, 77), 0);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressCleared, flagsRead, setDown, systemMacRead,
                   macSet, "gponOntMngVlanSet(1) -> 0", closed);
    EXPECT_EQ(platform.ont.address, std::nullopt);
    EXPECT_FALSE(isUp());
    EXPECT_EQ(platform.ont.vlanId, 1U);
}

// VLAN 1 is the management port's here.
TEST_F(Ont, IsSwitchedOffInTheManagementPortsVlanToo) {
    EXPECT_EQ(networkSetOntMng(0, ontMask, 1), 0);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressCleared, flagsRead, setDown, systemMacRead,
                   macSet, "gponOntMngVlanSet(1) -> 0", closed);
}

TEST_F(Ont, ManagementPortsVlanIsRefusedAndTheStandardInputClosed) {
    logEverything();
    journal();
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 1), -1);
    std::vector<std::string> entries = journal();
    std::erase_if(entries, [](const std::string& entry) { return entry.starts_with("syslog(7"); });
    EXPECT_THAT(entries,
                ElementsAreArray(sequence(
                    boardsInfoRead,
                    logged("4", "setOntMng: ont0 vlan is the same as managment port one (1)."),
                    "close(0) -> 0")));
    EXPECT_EQ(platform.ont.address, std::nullopt);
    EXPECT_EQ(platform.ont.flags, upFlags);
    EXPECT_EQ(platform.ont.vlanId, 4000U);
}

TEST_F(Ont, ManagementPortsVlanIsRefusedSilentlyBelowTheWarningLevel) {
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 1), -1);
    EXPECT_JOURNAL(boardsInfoRead, "close(0) -> 0");
}

TEST_F(Ont, OwnStateThatCannotBeReadIsReported) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(refused("sharedLock"), error("setOntMng: Could not read network info."));
}

TEST_F(Ont, WithoutASocketTheFirstRequestFails) {
    platform.fail("socket", EMFILE);
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(boardsInfoRead, "socket(2, 2, 0) -> errno 24",
                   R"(ioctl(-1, SIOCSIFADDR, "ont0" 2 192.0.2.5:0) -> errno 9)",
                   error("setOntMng: Could not set the ip to 0xc0000205. Errorcode : 9 Bad file "
                         "descriptor"));
}

// Where nothing else is open.
TEST_F(Ont, SocketZeroIsClosedToo) {
    platform.nextDescriptor = 0;
    platform.fail("ioctl SIOCGIFADDR", ENODEV);
    unsigned int unused = 0;
    EXPECT_EQ(networkGetOntMng(&unused, &unused, &unused), -1);
    EXPECT_JOURNAL("socket(2, 2, 0) -> 0", R"(ioctl(0, SIOCGIFADDR, "ont0") -> errno 19)",
                   error("getOntMng: Could not get the ip. Errorcode : 19 No such device"),
                   "close(0) -> 0");
}

TEST_F(Ont, ThatIsMissingIsReported) {
    platform.ont.exists = false;
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(
        boardsInfoRead, opened, R"(ioctl(1000, SIOCSIFADDR, "ont0" 2 192.0.2.5:0) -> errno 19)",
        error("setOntMng: Could not set the ip to 0xc0000205. Errorcode : 19 No such device"),
        closed);
}

TEST_F(Ont, AddressThatCannotBeClearedIsReported) {
    platform.fail("ioctl SIOCSIFADDR", EPERM);
    EXPECT_EQ(networkSetOntMng(0, ontMask, 77), -1);
    EXPECT_JOURNAL(boardsInfoRead, opened,
                   R"(ioctl(1000, SIOCSIFADDR, "ont0" 2 0.0.0.0:0) -> errno 1)",
                   error("setOntMng: Could not set the ip to 0x0. Errorcode : 1 Operation not "
                         "permitted"),
                   closed);
}

TEST_F(Ont, MaskThatCannotBeSetIsReportedAndTheAddressStays) {
    platform.fail("ioctl SIOCSIFNETMASK", EINVAL);
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(
        boardsInfoRead, opened, addressSet,
        R"(ioctl(1000, SIOCSIFNETMASK, "ont0" 2 255.255.255.0:0) -> errno 22)",
        error("setOntMng: Could not set the subnet mask to 0xffffff00. Errorcode : 22 Invalid "
              "argument"),
        closed);
    EXPECT_EQ(platform.ont.address, ontAddress);
    EXPECT_EQ(platform.ont.vlanId, 4000U);
}

TEST_F(Ont, ThatCannotBeBroughtUpIsReported) {
    platform.fail("ioctl SIOCSIFFLAGS", EPERM, fake::Script::forever, 1);
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressSet, maskSet, flagsRead, setDown, systemMacRead,
                   macSet, R"(ioctl(1000, SIOCSIFFLAGS, "ont0" 0x1043) -> errno 1)", flagsRefused,
                   closed);
    EXPECT_EQ(platform.ont.mac, platform.ont.systemMac);
    EXPECT_EQ(platform.ont.vlanId, 4000U);
}

TEST_F(Ont, VlanThatCannotBeStoredIsReportedAndTheRestStays) {
    platform.fail("gponOntMngVlanSet", 5);
    EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, 77), -1);
    EXPECT_JOURNAL(boardsInfoRead, opened, addressSet, maskSet, flagsRead, setDown, systemMacRead,
                   macSet, setUp, "gponOntMngVlanSet(77) -> 5",
                   error("setOntMng: Could not set the vlan 77."), closed);
    EXPECT_TRUE(isUp());
}

TEST_F(Ont, VlanIsNotCheckedOtherwise) {
    for (const unsigned int vlanId : {0U, 4095U, 0xffffffffU}) {
        EXPECT_EQ(networkSetOntMng(ontAddress, ontMask, vlanId), 0);
        EXPECT_EQ(platform.ont.vlanId, vlanId);
    }
    journal();
}

// Reading.

const std::string addressRead = R"(ioctl(1000, SIOCGIFADDR, "ont0") -> 0)";
const std::string maskRead = R"(ioctl(1000, SIOCGIFNETMASK, "ont0") -> 0)";

class OntReading : public Ont {
protected:
    OntReading() {
        platform.ont.address = ontAddress;
        platform.ont.netmask = ontMask;
    }

    unsigned int ipAddr = 71;
    unsigned int netmask = 72;
    unsigned int vlanId = 73;
};

TEST_F(OntReading, TellsAddressMaskAndVlan) {
    EXPECT_EQ(networkGetOntMng(&ipAddr, &netmask, &vlanId), 0);
    EXPECT_EQ(ipAddr, ontAddress);
    EXPECT_EQ(netmask, ontMask);
    EXPECT_EQ(vlanId, 4000U);
    EXPECT_JOURNAL(opened, addressRead, maskRead, "gponOntMngVlanGet() -> 0 4000", closed);
}

TEST_F(OntReading, WithoutAnAddressIsReported) {
    platform.ont.address.reset();
    EXPECT_EQ(networkGetOntMng(&ipAddr, &netmask, &vlanId), -1);
    EXPECT_EQ(ipAddr, 71U);
    EXPECT_EQ(netmask, 72U);
    EXPECT_EQ(vlanId, 73U);
    EXPECT_JOURNAL(opened, R"(ioctl(1000, SIOCGIFADDR, "ont0") -> errno 99)",
                   error("getOntMng: Could not get the ip. Errorcode : 99 Cannot assign "
                         "requested address"),
                   closed);
}

TEST_F(OntReading, WithoutASocketTheFirstRequestFails) {
    platform.fail("socket", ENFILE);
    EXPECT_EQ(networkGetOntMng(&ipAddr, &netmask, &vlanId), -1);
    EXPECT_JOURNAL("socket(2, 2, 0) -> errno 23", R"(ioctl(-1, SIOCGIFADDR, "ont0") -> errno 9)",
                   error("getOntMng: Could not get the ip. Errorcode : 9 Bad file descriptor"));
}

TEST_F(OntReading, MaskThatCannotBeReadIsReported) {
    platform.fail("ioctl SIOCGIFNETMASK", ENODEV);
    EXPECT_EQ(networkGetOntMng(&ipAddr, &netmask, &vlanId), -1);
    EXPECT_EQ(ipAddr, ontAddress);
    EXPECT_EQ(netmask, 72U);
    EXPECT_JOURNAL(opened, addressRead, R"(ioctl(1000, SIOCGIFNETMASK, "ont0") -> errno 19)",
                   error("getOntMng: Could not get the subnet mask. Errorcode : 19 No such device"),
                   closed);
}

TEST_F(OntReading, VlanThatCannotBeReadIsReportedInTheSettersName) {
    platform.fail("gponOntMngVlanGet", 5);
    EXPECT_EQ(networkGetOntMng(&ipAddr, &netmask, &vlanId), -1);
    EXPECT_EQ(vlanId, 73U);
    EXPECT_JOURNAL(opened, addressRead, maskRead, "gponOntMngVlanGet() -> 5",
                   error("setOntMng: Could not read the vlan."), closed);
}

}  // namespace
