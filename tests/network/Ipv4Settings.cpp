// Information about the management interface, the DHCP client's switch, the default gateway, and
// what these operations share.

#include "network/Ipv4Test.h"

namespace {

using testing::ElementsAre;

constexpr unsigned int otherGateway = 0xc00002fe;  // 192.0.2.254

using Ipv4Settings = Ipv4Test;

// Reading the information.

TEST_F(Ipv4Settings, InformationIsReadWhole) {
    platform.addressing.dhcp.option82Enabled = 7;
    platform.shelf.defaultVlan = 4094;
    platform.shelf.isDefaultVlanNative = true;
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(sharing(
        R"(varoGetDhcp() -> 0 {selector=0 dhcp=1 vendor=1 option82=7 circuitId="kept"})",
        "interfaceMngGet() -> 0 1", trace("getNetworkInfo: portID: 1."),
        R"(interfaceLinuxnameGet(1, 9) -> 0 "mng0")", macRead, addressRead,
        trace("getNetworkInfo: vlanid=1 mngVlanMode=0"), "defConnectGetDefVid() -> 4094",
        "defConnectGetDefModeNative() -> 1", trace("getNetworkInfo: defVid=4094 defVlanMode=2")));
    EXPECT_EQ(info.ipAddr, oldAddress);
    EXPECT_EQ(info.netmask, mask);
    EXPECT_THAT(info.macAddr, ElementsAre(2, 0, 0, 0, 0, 7));
    EXPECT_THAT(info.spareMacAddr, ElementsAre(0, 0, 0, 0, 0, 0));
    EXPECT_EQ(info.dhcpEnabled, 1U);
    EXPECT_EQ(info.vendorClassEnabled, 1U);
    EXPECT_EQ(info.mngVlanId, 1U);
    EXPECT_EQ(info.mngVlanMode, 0U);
    EXPECT_EQ(info.defVid, 4094U);
    EXPECT_EQ(info.defVlanMode, 2U);
    EXPECT_EQ(info.option82Enabled, 1U);
    EXPECT_EQ(info.reserved, 0U);
}

TEST_F(Ipv4Settings, InformationTellsTheFlagsOfTheDhcpRecordApart) {
    platform.addressing.dhcp = {};
    platform.addressing.dhcp.dhcpEnabled = 2;
    EXPECT_EQ(info().dhcpEnabled, 1U);
    EXPECT_EQ(info().vendorClassEnabled, 0U);
    EXPECT_EQ(info().option82Enabled, 0U);
    platform.addressing.dhcp = {};
    platform.addressing.dhcp.option82Enabled = 1;
    EXPECT_EQ(info().dhcpEnabled, 0U);
    EXPECT_EQ(info().vendorClassEnabled, 0U);
    EXPECT_EQ(info().option82Enabled, 1U);
}

TEST_F(Ipv4Settings, InformationGoesOutOnTheWire) {
    platform.addressing.dhcp.option82Enabled = 1;
    rpcNetworkInfo out{};
    EXPECT_EQ(networkGetNetworkInfo(&out), 0);
    journal();
    EXPECT_EQ(out.ipAddress, oldAddress);
    EXPECT_EQ(out.netmask, mask);
    EXPECT_THAT(out.macAddress.octets, ElementsAre(2, 0, 0, 0, 0, 7));
    EXPECT_EQ(out.dhcpEnabled, 1);
    EXPECT_EQ(out.vendorClassEnabled, 1);
    EXPECT_EQ(out.mngVlanId, 1U);
    EXPECT_EQ(out.option82Enabled, 1);
    EXPECT_EQ(out.defVid, 1U);
    EXPECT_EQ(out.defVlanMode, rpcVlanTagged);
}

TEST_F(Ipv4Settings, InformationRecordThatIsNullIsReported) {
    EXPECT_EQ(entity().getNetworkInfo(nullptr), -1);
    EXPECT_JOURNAL(sharing(error("getNetworkInfo failed! One of input args is NULL. info: (nil)")));
}

TEST_F(Ipv4Settings, DhcpIsReportedOnWhenItCannotBeRead) {
    platform.addressing.dhcp.option82Enabled = 1;
    platform.fail("varoGetDhcp", -5);
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(infoRead(addressRead, dhcpUnread("-5")));
    EXPECT_EQ(info.dhcpEnabled, 1U);
    EXPECT_EQ(info.vendorClassEnabled, 0U);
    EXPECT_EQ(info.option82Enabled, 0U);
    EXPECT_EQ(info.ipAddr, oldAddress);
}

TEST_F(Ipv4Settings, PortThatCannotBeFoundIsLookedUpAsPortZero) {
    platform.fail("interfaceMngGet", 3);
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(sharing(
        dhcpRead, "interfaceMngGet() -> 3", trace("interfaceMngGet returned error"),
        trace("getNetworkInfo: portID: 0."), "interfaceLinuxnameGet(0, 9) -> 1",
        error("getNetworkInfo: function interfaceLinuxnameGet has failed!portID: 0."), vlansRead));
    EXPECT_EQ(info.ipAddr, 0U);
    EXPECT_EQ(info.netmask, 0U);
    EXPECT_THAT(info.macAddr, ElementsAre(0, 0, 0, 0, 0, 0));
    EXPECT_EQ(info.mngVlanId, 1U);
}

TEST_F(Ipv4Settings, PortWithoutANameHasNeitherAddressNorMac) {
    platform.fail("interfaceLinuxnameGet", 4);
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(sharing(
        dhcpRead, "interfaceMngGet() -> 0 1", trace("getNetworkInfo: portID: 1."),
        "interfaceLinuxnameGet(1, 9) -> 4",
        error("getNetworkInfo: function interfaceLinuxnameGet has failed!portID: 1."), vlansRead));
    EXPECT_EQ(info.ipAddr, 0U);
    EXPECT_EQ(info.netmask, 0U);
    EXPECT_THAT(info.macAddr, ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST_F(Ipv4Settings, PortNameMayHaveEightCharacters) {
    platform.shelf.portNames[1] = "mgmt4567";
    platform.addressing.interfaces["mgmt4567"] = {newAddress, mask};
    EXPECT_EQ(info().ipAddr, newAddress);
    platform.shelf.portNames[1] = "mgmt45678";
    EXPECT_EQ(info().ipAddr, 0U);
}

TEST_F(Ipv4Settings, MacThatCannotBeReadIsZeroSilently) {
    platform.fail("varoGetIfcMAC", 5);
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(sharing(dhcpRead, "interfaceMngGet() -> 0 1",
                           trace("getNetworkInfo: portID: 1."),
                           R"(interfaceLinuxnameGet(1, 9) -> 0 "mng0")",
                           R"(varoGetIfcMAC("mng0") -> 5)", addressRead, vlansRead));
    EXPECT_THAT(info.macAddr, ElementsAre(0, 0, 0, 0, 0, 0));
    EXPECT_EQ(info.ipAddr, oldAddress);
}

TEST_F(Ipv4Settings, AddressThatCannotBeReadIsZeroSilently) {
    platform.fail("varoGetInterface", 5);
    const Network::NetworkInfo info = infoOverOldValues();
    EXPECT_JOURNAL(infoRead(R"(varoGetInterface("mng0") -> 5)"));
    EXPECT_THAT(info.macAddr, ElementsAre(2, 0, 0, 0, 0, 7));
    EXPECT_EQ(info.ipAddr, 0U);
    EXPECT_EQ(info.netmask, 0U);
}

// The DHCP client's switch.

Entries dhcpSwitched(const std::string& value, int updated) {
    const std::string status = std::to_string(updated);
    return {dhcpRead,
            "varoUpdateDhcp({selector=2 dhcp=" + value +
                R"( vendor=1 option82=0 circuitId="kept"}) -> )" + status,
            trace("setProtocol: return value for varoUpdateDhcp: " + status)};
}
const Entries alarmTakenBack = {
    "varoDhcpRetreatAlrServNotResponding() -> 0",
    trace("setProtocol: return value for varoDhcpRetreatAlrServNotResponding: 0")};

TEST_F(Ipv4Settings, DhcpIsSwitchedOffWithoutTouchingTheAddress) {
    EXPECT_EQ(networkSetProtocol(0), 0);
    EXPECT_JOURNAL(exclusively(dhcpSwitched("0", 0), alarmTakenBack));
    EXPECT_EQ(info().ipAddr, oldAddress);
    EXPECT_EQ(gatewayNow(), gateway);
}

TEST_F(Ipv4Settings, DhcpIsSwitchedOnByAnyValueButZero) {
    for (const int on : {1, 2, -1, 256}) {
        platform.addressing.dhcp.updateSelector = 0;
        EXPECT_EQ(networkSetProtocol(on), 0);
        EXPECT_JOURNAL(exclusively(dhcpSwitched("1", 0), alarmTakenBack));
    }
}

TEST_F(Ipv4Settings, SwitchIsWrittenThoughTheRecordCannotBeRead) {
    platform.fail("varoGetDhcp", 5);
    EXPECT_EQ(networkSetProtocol(1), 0);
    EXPECT_JOURNAL(
        exclusively("varoGetDhcp() -> 5",
                    R"(varoUpdateDhcp({selector=2 dhcp=1 vendor=0 option82=0 circuitId=""}) -> 0)",
                    trace("setProtocol: return value for varoUpdateDhcp: 0"), alarmTakenBack));
}

TEST_F(Ipv4Settings, SwitchThatCannotBeWrittenFails) {
    platform.fail("varoUpdateDhcp", 6);
    EXPECT_EQ(networkSetProtocol(0), -1);
    EXPECT_JOURNAL(exclusively(dhcpSwitched("0", 6)));
}

TEST_F(Ipv4Settings, SwitchFailsWhenTheAlarmCannotBeTakenBackButIsWritten) {
    platform.fail("varoDhcpRetreatAlrServNotResponding", -7);
    EXPECT_EQ(networkSetProtocol(0), -1);
    EXPECT_JOURNAL(exclusively(
        dhcpSwitched("0", 0), "varoDhcpRetreatAlrServNotResponding() -> -7",
        trace("setProtocol: return value for varoDhcpRetreatAlrServNotResponding: -7")));
    EXPECT_EQ(info().dhcpEnabled, 0U);
}

// The default gateway.

const std::string gatewayLocked = trace("setGateway: after lock");
const std::string oldGatewayDeleted = "varoDeleteRoute({0.0.0.0 via 192.0.2.1}) -> 0";

TEST_F(Ipv4Settings, GatewayIsReplaced) {
    EXPECT_EQ(networkSetGateway(otherGateway), 0);
    EXPECT_JOURNAL(exclusively(gatewayLocked, gatewayRead, oldGatewayDeleted,
                               "varoAddRoute({0.0.0.0 via 192.0.2.254}) -> 0",
                               trace("setGateway: new default gateway added!")));
    EXPECT_EQ(gatewayNow(), otherGateway);
}

TEST_F(Ipv4Settings, FirstGatewayHasNoneToDelete) {
    platform.addressing.defaultGateway = 0;
    EXPECT_EQ(networkSetGateway(0xffffffff), 0);
    EXPECT_JOURNAL(exclusively(gatewayLocked, noGatewayRead,
                               "varoAddRoute({0.0.0.0 via 255.255.255.255}) -> 0",
                               trace("setGateway: new default gateway added!")));
    EXPECT_EQ(gatewayNow(), 0xffffffffU);
}

TEST_F(Ipv4Settings, GatewayInPlaceStays) {
    EXPECT_EQ(networkSetGateway(gateway), 0);
    EXPECT_JOURNAL(exclusively(gatewayLocked, gatewayRead));
}

TEST_F(Ipv4Settings, GatewayZeroDeletes) {
    EXPECT_EQ(networkSetGateway(0), 0);
    EXPECT_JOURNAL(exclusively(gatewayLocked, gatewayRead, oldGatewayDeleted));
    EXPECT_EQ(gatewayNow(), 0U);
}

TEST_F(Ipv4Settings, GatewayZeroWithoutAGatewayDoesNothing) {
    platform.addressing.defaultGateway = 0;
    EXPECT_EQ(networkSetGateway(0), 0);
    EXPECT_JOURNAL(exclusively(gatewayLocked, noGatewayRead));
}

TEST_F(Ipv4Settings, GatewayIsNotTouchedWhenTheCurrentOneIsNotToBeHad) {
    platform.fail("sharedLock", 1);
    EXPECT_EQ(networkSetGateway(otherGateway), -1);
    EXPECT_JOURNAL(exclusively(gatewayLocked, refused("sharedLock")));
    EXPECT_EQ(platform.addressing.defaultGateway, gateway);
}

TEST_F(Ipv4Settings, GatewayThatCannotBeDeletedStays) {
    platform.fail("varoDeleteRoute", 5);
    EXPECT_EQ(networkSetGateway(otherGateway), -1);
    EXPECT_JOURNAL(exclusively(gatewayLocked, gatewayRead,
                               "varoDeleteRoute({0.0.0.0 via 192.0.2.1}) -> 5",
                               trace("setGateway: unable to delete old default gateway")));
    EXPECT_EQ(gatewayNow(), gateway);
}

TEST_F(Ipv4Settings, GatewayThatCannotBeAddedLeavesNone) {
    platform.fail("varoAddRoute", 5);
    EXPECT_EQ(networkSetGateway(otherGateway), -1);
    EXPECT_JOURNAL(exclusively(gatewayLocked, gatewayRead, oldGatewayDeleted,
                               "varoAddRoute({0.0.0.0 via 192.0.2.254}) -> 5",
                               trace("setGateway: failed to add new default gateway")));
    EXPECT_EQ(gatewayNow(), 0U);
}

TEST_F(Ipv4Settings, GatewayIsRead) {
    unsigned int read = 77;
    EXPECT_EQ(networkGetGateway(&read), 0);
    EXPECT_EQ(read, gateway);
    EXPECT_JOURNAL(gatewayRead);
}

TEST_F(Ipv4Settings, MissingGatewayReadsAsZero) {
    platform.addressing.defaultGateway = 0;
    unsigned int read = 77;
    EXPECT_EQ(networkGetGateway(&read), 0);
    EXPECT_EQ(read, 0U);
    EXPECT_JOURNAL(noGatewayRead);
}

TEST_F(Ipv4Settings, GatewayThatIsNullIsReported) {
    EXPECT_EQ(networkGetGateway(nullptr), -1);
    EXPECT_JOURNAL(sharing(error("getGateway failed! One of input args is NULL. gw: (nil)")));
}

// Helpers.

TEST_F(Ipv4Settings, InterfaceRecordThatIsNullIsReported) {
    EXPECT_FALSE(entity().getIntf(oldAddress, mask, nullptr));
    EXPECT_JOURNAL(error("getIntf failed! One of input args is NULL. intf: (nil)"));
}

TEST_F(Ipv4Settings, InterfaceRecordIsClearedAndTakesTheValuesAsGiven) {
    auto record = filled<varoLib_s_interface>(0xff);
    EXPECT_TRUE(entity().getIntf(1, 0x00ff00ff, &record));
    EXPECT_JOURNAL(portNamed);
    EXPECT_EQ(record.ipAddr, 1U);
    EXPECT_EQ(record.netmask, 0x00ff00ffU);
    EXPECT_EQ(record.reserved, 0U);
    EXPECT_EQ(std::string(record.name, sizeof record.name),
              std::string("mng0") + std::string(12, '\0'));
    EXPECT_THAT(record.reserved2, testing::Each(0));
}

struct Mask {
    unsigned int given;
    unsigned int prefix;
};

TEST_F(Ipv4Settings, MasksAreCutToTheirLeadingRunOfOnesAndComplementedOnDemand) {
    for (const auto& [given, prefix] : {Mask{0, 0},
                                        {0xffffffff, 0xffffffff},
                                        {0xffffff00, 0xffffff00},
                                        {0xff00ff00, 0xff000000},
                                        {0xffff00ff, 0xffff0000},
                                        {0xfffffffe, 0xfffffffe},
                                        {0x80000000, 0x80000000},
                                        {0x80000001, 0x80000000},
                                        {0x7fffffff, 0},
                                        {0x00ffffff, 0},
                                        {1, 0}}) {
        unsigned int result = given;
        EXPECT_TRUE(entity().correctNetmask(&result, false));
        EXPECT_EQ(result, prefix) << std::hex << given;
        result = given;
        EXPECT_TRUE(entity().correctNetmask(&result, true));
        EXPECT_EQ(result, ~prefix) << std::hex << given;
    }
    journal();
}

TEST_F(Ipv4Settings, MasksAreTracedBeforeAndAfterTheComplement) {
    unsigned int value = 0xffffff00;
    entity().correctNetmask(&value, true);
    EXPECT_JOURNAL(trace("correctNetmask: before negation mask=0xffffff00"),
                   trace("correctNetmask: after negation mask=0xff"));
    value = 0xff00ff00;
    entity().correctNetmask(&value, false);
    EXPECT_JOURNAL(trace("correctNetmask: before negation mask=0xff000000"),
                   trace("correctNetmask: after negation mask=0xff000000"));
}

TEST_F(Ipv4Settings, BoardPositionIsReadOrZero) {
    unsigned int position = 77;
    entity().getIpmiBoardPos(&position);
    EXPECT_EQ(position, 5U);
    EXPECT_JOURNAL("varoGetMyBoardPos() -> 0 5");
    platform.fail("varoGetMyBoardPos", -4);
    entity().getIpmiBoardPos(&position);
    EXPECT_EQ(position, 0U);
    EXPECT_JOURNAL("varoGetMyBoardPos() -> -4",
                   error("getIpmiBoardPos: varoGetMyBoardPos has failed: rv=-4"));
}

}  // namespace
