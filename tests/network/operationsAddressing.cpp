// Rows of the addresses, the VLANs, the remote access and the ONT.

#include "network/exports.h"
#include "network/operations.h"

#include <net/if.h>

namespace {

/// What is asked of the board to tell its own state.
constexpr const char* infoRead =
    "sharedLock varoGetDhcp=0 interfaceMngGet=0 interfaceLinuxnameGet=0 varoGetIfcMAC=0 "
    "varoGetInterface=0 defConnectGetDefVid? defConnectGetDefModeNative? ~";

constexpr unsigned int mask = 0xffffff00;
constexpr unsigned int otherAddress = 0xc633640a;
constexpr unsigned int gateway = 0xc0000201;
constexpr unsigned int otherGateway = 0xc00002fe;

/// Neither an address to detach nor a gateway to keep.
void withoutAddress(fake::Platform& board) {
    board.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
    board.addressing.interfaces["mng0"] = {0, 0};
}

/// A board with an address, a gateway, option 82 and a VLAN to move to.
void ordinary(fake::Platform& board) {
    board.addressing.interfaces["mng0"] = {0xc000020a, 0xffffff00};
    board.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
    board.addressing.defaultGateway = gateway;
    board.addressing.dhcp.option82Enabled = 1;
    board.shelf.vlans[100];
}

void inProfileMode(fake::Platform& board) {
    ordinary(board);
    board.shelf.isInProfileMode = true;
}

/// VLANs that are missing are created.
void withCordProfile(fake::Platform& board) {
    ordinary(board);
    board.shelf.activeFeatures.insert(12);
}

std::vector<Operation> addressing() {
    // A port that is not found has no address to detach, and none to attach either.
    const std::string infoNeeded =
        "sharedLock varoGetDhcp=0 interfaceMngGet=0/-1 interfaceLinuxnameGet=0/-1 varoGetIfcMAC=0 "
        "varoGetInterface=0 defConnectGetDefVid? defConnectGetDefModeNative? ~";
    const std::string dhcpOff = "varoGetDhcp=0 varoUpdateDhcp varoDhcpRetreatAlrServNotResponding";
    const std::string attached =
        "interfaceMngGet interfaceLinuxnameGet varoAttachIpToIntf varoSendSigToAcs=0";
    return onBoard(
        ordinary,
        {
            Operation(EXPORTED(networkSetIp, otherAddress, mask),
                      "exclusiveLock " + infoNeeded + " " + dhcpOff +
                          " sharedLock=0 varoGetRouteByDst=0 ~ interfaceMngGet=0/-1 "
                          "interfaceLinuxnameGet=0/-1 varoDettachIpFromIntf=0 " +
                          attached +
                          " exclusiveLock=0 sharedLock=0 varoGetRouteByDst? ~ varoAddRoute=0 ~ ~"),
            Operation(EXPORTED(networkSetIp, otherAddress, mask),
                      "exclusiveLock " + infoNeeded + " " + dhcpOff +
                          " sharedLock=0 varoGetRouteByDst? ~ " + attached +
                          " exclusiveLock=0 sharedLock=0 varoGetRouteByDst? ~ ~ ~")
                .as("WithoutAnOldAddress")
                .on(withoutAddress),
            Operation(EXPORTED(networkSetProtocol, 1), "exclusiveLock " + dhcpOff + " ~"),
            Operation(EXPORTED(networkSetProtocol, 0), "exclusiveLock " + dhcpOff + " ~").as("Off"),
            // Taken for missing, the old route is not deleted, and the new one finds its place
            // taken.
            Operation(
                EXPORTED(networkSetGateway, otherGateway),
                "exclusiveLock sharedLock varoGetRouteByDst=-1 ~ varoDeleteRoute varoAddRoute ~"),
            Operation(EXPORTED(networkSetGateway, otherGateway),
                      "exclusiveLock sharedLock varoGetRouteByDst? ~ varoAddRoute ~")
                .as("WithoutAnOldOne")
                .on(withoutAddress),
            Operation(EXPORTED(networkSetGateway, 0),
                      "exclusiveLock sharedLock varoGetRouteByDst=0 ~ varoDeleteRoute ~")
                .as("ToNone"),
            Operation(EXPORTED(networkGetGateway, &buffers.numbers[0]),
                      "sharedLock varoGetRouteByDst=0 ~"),
            Operation(EXPORTED(networkGetNetworkInfo, &buffers.info), infoRead),
            Operation(EXPORTED(networkSetVendor, 1, 1),
                      "exclusiveLock varoGetDhcp=0 varoUpdateDhcp ~"),
            Operation(EXPORTED(networkSetVendor, 0, 0),
                      "exclusiveLock varoGetDhcp=0 varoUpdateDhcp ~")
                .as("Off"),
            Operation(EXPORTED(networkSetOption82, 1, 1),
                      "exclusiveLock varoGetDhcp=0 getShelfId? varoUpdateDhcp ~"),
            Operation(EXPORTED(networkSetOption82, 1, 0),
                      "exclusiveLock varoGetDhcp=0 varoUpdateDhcp ~")
                .as("Off"),
            Operation(EXPORTED(networkGetNextArp, 1, &buffers.arp), "").returns(-1),
        });
}

std::vector<Operation> vlans() {
    // And option 82 written anew.
    const std::string portMoved =
        "interfaceMngGet zuvlanDelMembership zuvlanAddMembership zuvlanSetPvid varoGetDhcp=0 "
        "exclusiveLock=0 varoGetDhcp=0 getShelfId? varoUpdateDhcp=0 ~ checkProfileMode?";
    return {
        Operation(EXPORTED(networkSetVlan, 100),
                  "exclusiveLock checkProfileMode? mngConnectCheckVlanProfileUplinkNative "
                  "zuvlanGetVlanInfoId=-1 " +
                      portMoved + " vlanMngWrite=0 updateMngStaticEntry=0 ~")
            .on(inProfileMode),
        Operation(EXPORTED(networkSetVlan, 100),
                  "exclusiveLock checkProfileMode? zuvlanGetVlanInfoId=0/-1 " + portMoved +
                      " updateMngStaticEntry=0 ~")
            .as("WithCordProfile")
            .on(withCordProfile),
        Operation(EXPORTED(networkSetVlan, 200),
                  "exclusiveLock checkProfileMode? zuvlanGetVlanInfoId? isActive? zuvlanCreate=-1 "
                  "zuvlanGetVlanInfoId " +
                      portMoved + " updateMngStaticEntry=0 ~")
            .as("ToAMissingOne")
            .on(withCordProfile),
        Operation(EXPORTED(networkSetDefVlanMode, 300, 2),
                  "exclusiveLock checkProfileMode? defConnectCheckUplinkConflict "
                  "defConnectReconfigureDefVlan ~")
            .on(inProfileMode),
        Operation(entityCall("onShelfIdVlanChange",
                             [](Network& network) { return network.onShelfIdVlanChange("4"), 0; }),
                  "exclusiveLock=0 varoGetDhcp=0 exclusiveLock=0 varoGetDhcp=0 getShelfId? "
                  "varoUpdateDhcp=0 ~ ~")
            .on(ordinary),
    };
}

std::vector<Operation> ipv6() {
    return onBoard(
        ordinary,
        {
            Operation(EXPORTED(networkSetIpv6Addr, buffers.texts[0], 64),
                      "exclusiveLock varoSetIpv6Addr ~"),
            Operation(EXPORTED(networkSetIpv6Gw, buffers.texts[0]),
                      "exclusiveLock varoSetIpv6Gw ~"),
            Operation(EXPORTED(networkRemoveIpv6Addr), "exclusiveLock varoRemoveIpv6Addr ~"),
            Operation(EXPORTED(networkRemoveIpv6Gw), "exclusiveLock varoRemoveIpv6Gw ~"),
            Operation(EXPORTED(networkGetIpv6Addr, buffers.texts[0], buffers.texts[1]),
                      "sharedLock varoGetIpv6 ~"),
            Operation(ENTITY(getNetworkInfoIpv6, &buffers.infoIpv6), "sharedLock varoGetIpv6=0 ~"),
            Operation(EXPORTED(networkGetIPv6Proto, &buffers.flag), "sharedLock varoGetDhcp6=0 ~"),
            Operation(EXPORTED(networkSetIPv6Proto, 1),
                      "sharedLock varoGetDhcp6=0 varoUpdateDhcp6 ~"),
            Operation(EXPORTED(networkSetIPv6Proto, 0),
                      "sharedLock varoGetDhcp6=0 varoUpdateDhcp6 ~")
                .as("Off"),
        });
}

void addRules(int count) {
    for (int number = 0; number < count; ++number) {
        networkAddRARule(0xc0000200, mask, 1, 0);
    }
}
void withOneRule(fake::Platform&) { addRules(1); }
void withThreeRules(fake::Platform&) { addRules(3); }

/// The list is there, and not bound.
void withEmptyList(fake::Platform&) {
    addRules(1);
    networkRemoveRARule(0);
}

std::vector<Operation> remoteAccess() {
    const std::string ruleAdded =
        "createRule=-1 changeRuleSequenceNumber=0 addCondition=0 interfaceMngGet assignACL ~";
    return onBoard(
        withThreeRules,
        {
            Operation(
                EXPORTED(networkAddRARule, 0xc0000200, mask, 1, 0),
                "exclusiveLock interfaceMngGet interfaceLinuxnameGet=0 createACL createRule=-1 "
                "addCondition=0 fflush? " +
                    ruleAdded)
                .as("ToNoList")
                .on(ordinary),
            Operation(EXPORTED(networkAddRARule, 0xc0000200, mask, 1, 0),
                      "exclusiveLock " + ruleAdded)
                .as("ToAnEmptyList")
                .on(withEmptyList),
            Operation(EXPORTED(networkAddRARule, 0xc0000200, mask, 1, 2),
                      "exclusiveLock interfaceMngGet deassignACL " + ruleAdded),
            Operation(EXPORTED(networkRemoveRARule, 2),
                      "exclusiveLock interfaceMngGet deassignACL delCondition=-1 delRuleById=0 "
                      "interfaceMngGet assignACL ~"),
            Operation(EXPORTED(networkRemoveRARule, 1),
                      "exclusiveLock interfaceMngGet deassignACL delCondition=-1 delRuleById=0 ~")
                .as("OfTheOnlyOne")
                .on(withOneRule),
            Operation(EXPORTED(networkRemoveRARule, 0),
                      "exclusiveLock interfaceMngGet deassignACL delCondition=-1 delRuleById=0 "
                      "delCondition=-1 delRuleById=0 delCondition=-1 delRuleById=0 ~")
                .as("OfAll"),
            Operation(EXPORTED(networkIterateRules, 2, &buffers.rule), "sharedLock getACLRule ~"),
            Operation(ENTITY(getAclIdx), "sharedLock ~").returns(3),
        });
}

/// An address of the management port's, and an ONT's interface that is up.
void withOnt(fake::Platform& board) {
    board.addressing.interfaces["mng0"] = {0xc000020a, 0xffffff00};
    board.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
    board.ont.flags = IFF_UP | IFF_BROADCAST;
    board.ont.address = 0xc0000205;
    board.ont.netmask = 0xffffff00;
}

std::vector<Operation> ont() {
    return onBoard(
        withOnt,
        {
            Operation(EXPORTED(networkSetOntMng, 0xc0000206, mask, 77),
                      std::string(infoRead) +
                          " socket=-1 SIOCSIFADDR SIOCSIFNETMASK SIOCGIFFLAGS SIOCSIFFLAGS "
                          "mngSystemMacGet SIOCSIFHWADDR SIOCSIFFLAGS gponOntMngVlanSet close=0")
                .locksForAPart(),
            Operation(EXPORTED(networkSetOntMng, 0, 0, 77),
                      std::string(infoRead) +
                          " socket=-1 SIOCSIFADDR SIOCGIFFLAGS SIOCSIFFLAGS mngSystemMacGet "
                          "SIOCSIFHWADDR gponOntMngVlanSet close=0")
                .as("Off")
                .locksForAPart(),
            Operation(EXPORTED_THAT_LOOKS(networkGetOntMng, &buffers.numbers[0],
                                          &buffers.numbers[1], &buffers.numbers[2]),
                      "socket=-1 SIOCGIFADDR SIOCGIFNETMASK gponOntMngVlanGet close=0"),
        });
}

}  // namespace

std::vector<Operation> addressingOperations() {
    return joined({addressing(), vlans(), ipv6(), remoteAccess(), ont()});
}
