#include "network/operations.h"

namespace {

/// Room for whatever the operations fill.
struct Buffers {
    int number;
    unsigned int numbers[2];
    bool flag;
    char texts[2][2000];
    Network::NetworkInfo info;
    Network::NetworkInfoIpv6 infoIpv6;
    Network::RemoteAccessRule rule;
} buffers{};

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

int addRule(Network& network, unsigned int index) {
    return network.addRARule(0xc0000200, 0xffffff00, true, index);
}

void withOneRule(fake::Platform&) { addRule(singleton<Network>::instance(), 0); }

/// The list is there, and not bound.
void withEmptyList(fake::Platform& board) {
    withOneRule(board);
    singleton<Network>::instance().removeRARule(0);
}

void withThreeRules(fake::Platform&) {
    for (int number = 0; number < 3; ++number) {
        addRule(singleton<Network>::instance(), 0);
    }
}

std::vector<Operation> addressing() {
    return {
        {"setIp",
         ordinary,
         [](Network& network) { return network.setIp(0xc633640a, 0xffffff00); },
         {{"exclusiveLock", -1},
          // The current state: a port that is not found has no address to detach.
          {"sharedLock", -1},
          {"varoGetDhcp", 0},
          {"interfaceMngGet", 0, -1},
          {"interfaceLinuxnameGet", 0, -1},
          {"varoGetIfcMAC", 0},
          {"varoGetInterface", 0},
          // DHCP off.
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", -1},
          {"varoDhcpRetreatAlrServNotResponding", -1},
          // The gateway to be kept.
          {"sharedLock", 0},
          {"varoGetRouteByDst", 0},
          // The old address.
          {"interfaceMngGet", 0, -1},
          {"interfaceLinuxnameGet", 0, -1},
          {"varoDettachIpFromIntf", 0},
          // The new address.
          {"interfaceMngGet", -1},
          {"interfaceLinuxnameGet", -1},
          {"varoAttachIpToIntf", -1},
          {"varoSendSigToAcs", 0},
          // The gateway anew.
          {"exclusiveLock", 0},
          {"sharedLock", 0},
          {"varoAddRoute", 0}}},
        {"setIpWithoutAnOldAddress",
         withoutAddress,
         [](Network& network) { return network.setIp(0xc633640a, 0xffffff00); },
         {{"exclusiveLock", -1},
          {"sharedLock", -1},
          {"varoGetDhcp", 0},
          {"interfaceMngGet", 0, -1},
          {"interfaceLinuxnameGet", 0, -1},
          {"varoGetIfcMAC", 0},
          {"varoGetInterface", 0},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", -1},
          {"varoDhcpRetreatAlrServNotResponding", -1},
          {"sharedLock", 0},
          {"interfaceMngGet", -1},
          {"interfaceLinuxnameGet", -1},
          {"varoAttachIpToIntf", -1},
          {"varoSendSigToAcs", 0},
          {"exclusiveLock", 0},
          {"sharedLock", 0}}},
        {"setProtocol",
         ordinary,
         [](Network& network) { return network.setProtocol(true); },
         {{"exclusiveLock", -1},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", -1},
          {"varoDhcpRetreatAlrServNotResponding", -1}}},
        {"setProtocolOff",
         ordinary,
         [](Network& network) { return network.setProtocol(false); },
         {{"exclusiveLock", -1},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", -1},
          {"varoDhcpRetreatAlrServNotResponding", -1}}},
        {"setGateway",
         ordinary,
         [](Network& network) { return network.setGateway(otherGateway); },
         {{"exclusiveLock", -1},
          {"sharedLock", -1},
          // Taken for missing, the old route is not deleted, and the new one finds its place taken.
          {"varoGetRouteByDst", -1},
          {"varoDeleteRoute", -1},
          {"varoAddRoute", -1}}},
        {"setGatewayWithoutAnOldOne",
         withoutAddress,
         [](Network& network) { return network.setGateway(otherGateway); },
         {{"exclusiveLock", -1}, {"sharedLock", -1}, {"varoAddRoute", -1}}},
        {"setGatewayToNone",
         ordinary,
         [](Network& network) { return network.setGateway(0); },
         {{"exclusiveLock", -1},
          {"sharedLock", -1},
          {"varoGetRouteByDst", 0},
          {"varoDeleteRoute", -1}}},
        {"getGateway",
         ordinary,
         [](Network& network) { return network.getGateway(&buffers.numbers[0]); },
         {{"sharedLock", -1}, {"varoGetRouteByDst", 0}}},
        {"getNetworkInfo",
         ordinary,
         [](Network& network) { return network.getNetworkInfo(&buffers.info); },
         {{"sharedLock", -1},
          {"varoGetDhcp", 0},
          {"interfaceMngGet", 0},
          {"interfaceLinuxnameGet", 0},
          {"varoGetIfcMAC", 0},
          {"varoGetInterface", 0}}},
        {"setVendor",
         ordinary,
         [](Network& network) { return network.setVendor(true, true); },
         {{"exclusiveLock", -1}, {"varoGetDhcp", 0}, {"varoUpdateDhcp", -1}}},
        {"setVendorOff",
         ordinary,
         [](Network& network) { return network.setVendor(false, false); },
         {{"exclusiveLock", -1}, {"varoGetDhcp", 0}, {"varoUpdateDhcp", -1}}},
        {"setOption82",
         ordinary,
         [](Network& network) { return network.setOption82(true, true); },
         {{"exclusiveLock", -1}, {"varoGetDhcp", 0}, {"varoUpdateDhcp", -1}}},
        {"setOption82Off",
         ordinary,
         [](Network& network) { return network.setOption82(true, false); },
         {{"exclusiveLock", -1}, {"varoGetDhcp", 0}, {"varoUpdateDhcp", -1}}},
    };
}

std::vector<Operation> vlans() {
    return {
        {"setVlan",
         inProfileMode,
         [](Network& network) { return network.setVlan(100); },
         {{"exclusiveLock", -1},
          {"mngConnectCheckVlanProfileUplinkNative", -1},
          {"zuvlanGetVlanInfoId", -1},
          {"interfaceMngGet", -1},
          {"zuvlanDelMembership", -1},
          {"zuvlanAddMembership", -1},
          {"zuvlanSetPvid", -1},
          {"varoGetDhcp", 0},
          {"exclusiveLock", 0},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", 0},
          {"vlanMngWrite", 0},
          {"updateMngStaticEntry", 0}}},
        {"setVlanWithCordProfile",
         withCordProfile,
         [](Network& network) { return network.setVlan(100); },
         {{"exclusiveLock", -1},
          {"zuvlanGetVlanInfoId", 0, -1},
          {"interfaceMngGet", -1},
          {"zuvlanDelMembership", -1},
          {"zuvlanAddMembership", -1},
          {"zuvlanSetPvid", -1},
          {"varoGetDhcp", 0},
          {"exclusiveLock", 0},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", 0},
          {"updateMngStaticEntry", 0}}},
        {"setVlanToAMissingOne",
         withCordProfile,
         [](Network& network) { return network.setVlan(200); },
         {{"exclusiveLock", -1},
          {"zuvlanCreate", -1},
          {"zuvlanGetVlanInfoId", -1},
          {"interfaceMngGet", -1},
          {"zuvlanDelMembership", -1},
          {"zuvlanAddMembership", -1},
          {"zuvlanSetPvid", -1},
          {"varoGetDhcp", 0},
          {"exclusiveLock", 0},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", 0},
          {"updateMngStaticEntry", 0}}},
        {"setDefVlanMode",
         inProfileMode,
         [](Network& network) { return network.setDefVlanMode(300, 2); },
         {{"exclusiveLock", -1},
          {"defConnectCheckUplinkConflict", -1},
          {"defConnectReconfigureDefVlan", -1}}},
        {"onShelfIdVlanChange",
         ordinary,
         [](Network& network) { return network.onShelfIdVlanChange("4"), 0; },
         {{"exclusiveLock", 0},
          {"varoGetDhcp", 0},
          {"exclusiveLock", 0},
          {"varoGetDhcp", 0},
          {"varoUpdateDhcp", 0}}},
    };
}

std::vector<Operation> ipv6() {
    return {
        {"setIpv6Addr",
         ordinary,
         [](Network& network) { return network.setIpv6Addr(buffers.texts[0], 64); },
         {{"exclusiveLock", -1}, {"varoSetIpv6Addr", -1}}},
        {"setIpv6Gw",
         ordinary,
         [](Network& network) { return network.setIpv6Gw(buffers.texts[0]); },
         {{"exclusiveLock", -1}, {"varoSetIpv6Gw", -1}}},
        {"removeIpv6Addr",
         ordinary,
         [](Network& network) { return network.removeIpv6Addr(); },
         {{"exclusiveLock", -1}, {"varoRemoveIpv6Addr", -1}}},
        {"removeIpv6Gw",
         ordinary,
         [](Network& network) { return network.removeIpv6Gw(); },
         {{"exclusiveLock", -1}, {"varoRemoveIpv6Gw", -1}}},
        {"getIpv6Addr",
         ordinary,
         [](Network& network) { return network.getIpv6Addr(buffers.texts[0], buffers.texts[1]); },
         {{"sharedLock", -1}, {"varoGetIpv6", -1}}},
        {"getNetworkInfoIpv6",
         ordinary,
         [](Network& network) { return network.getNetworkInfoIpv6(&buffers.infoIpv6); },
         {{"sharedLock", -1}, {"varoGetIpv6", 0}}},
        {"getIPv6Proto",
         ordinary,
         [](Network& network) { return network.getIPv6Proto(&buffers.flag); },
         {{"sharedLock", -1}, {"varoGetDhcp6", 0}}},
        {"setIPv6Proto",
         ordinary,
         [](Network& network) { return network.setIPv6Proto(true); },
         {{"sharedLock", -1}, {"varoGetDhcp6", 0}, {"varoUpdateDhcp6", -1}}},
        {"setIPv6ProtoOff",
         ordinary,
         [](Network& network) { return network.setIPv6Proto(false); },
         {{"sharedLock", -1}, {"varoGetDhcp6", 0}, {"varoUpdateDhcp6", -1}}},
    };
}

std::vector<Operation> remoteAccess() {
    return {
        {"addRARuleToNoList",
         ordinary,
         [](Network& network) { return addRule(network, 0); },
         {{"exclusiveLock", -1},
          // The list and its catch-all.
          {"interfaceMngGet", -1},
          {"interfaceLinuxnameGet", 0},
          {"createACL", -1},
          {"createRule", -1},
          {"addCondition", 0},
          // The rule.
          {"createRule", -1},
          {"changeRuleSequenceNumber", 0},
          {"addCondition", 0},
          {"interfaceMngGet", -1},
          {"assignACL", -1}}},
        {"addRARuleToAnEmptyList",
         withEmptyList,
         [](Network& network) { return addRule(network, 0); },
         {{"exclusiveLock", -1},
          {"createRule", -1},
          {"changeRuleSequenceNumber", 0},
          {"addCondition", 0},
          {"interfaceMngGet", -1},
          {"assignACL", -1}}},
        {"addRARule",
         withThreeRules,
         [](Network& network) { return addRule(network, 2); },
         {{"exclusiveLock", -1},
          {"interfaceMngGet", -1},
          {"deassignACL", -1},
          {"createRule", -1},
          {"changeRuleSequenceNumber", 0},
          {"addCondition", 0},
          {"interfaceMngGet", -1},
          {"assignACL", -1}}},
        {"removeRARule",
         withThreeRules,
         [](Network& network) { return network.removeRARule(2); },
         {{"exclusiveLock", -1},
          {"interfaceMngGet", -1},
          {"deassignACL", -1},
          {"delCondition", -1},
          {"delRuleById", 0},
          {"interfaceMngGet", -1},
          {"assignACL", -1}}},
        {"removeRARuleOfTheOnlyOne",
         withOneRule,
         [](Network& network) { return network.removeRARule(1); },
         {{"exclusiveLock", -1},
          {"interfaceMngGet", -1},
          {"deassignACL", -1},
          {"delCondition", -1},
          {"delRuleById", 0}}},
        {"removeRARuleOfAll",
         withThreeRules,
         [](Network& network) { return network.removeRARule(0); },
         {{"exclusiveLock", -1},
          {"interfaceMngGet", -1},
          {"deassignACL", -1},
          {"delCondition", -1},
          {"delRuleById", 0},
          {"delCondition", -1},
          {"delRuleById", 0},
          {"delCondition", -1},
          {"delRuleById", 0}}},
        {"iterateRules",
         withThreeRules,
         [](Network& network) { return network.iterateRules(2, &buffers.rule); },
         {{"sharedLock", -1}, {"getACLRule", -1}}},
        {"getAclIdx",
         withThreeRules,
         [](Network& network) { return static_cast<int>(network.getAclIdx()); },
         {{"sharedLock", -1}},
         3},
    };
}

/// These answer 1 whatever becomes of the remote-access list.
std::vector<Operation> lifecycle() {
    return {
        {"start",
         ordinary,
         [](Network& network) { return network.start(); },
         {{"interfaceMngGet", 1},
          {"interfaceLinuxnameGet", 1},
          {"createACL", 1},
          {"createRule", 1},
          {"addCondition", 1},
          {"pthread_create", 1}},
         1},
        {"stop",
         withThreeRules,
         [](Network& network) { return network.stop(); },
         {{"delCondition", 1}, {"delRuleById", 1}, {"deleteACL", 1}},
         1},
    };
}

}  // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> rows;
        for (const auto& group :
             {addressing(), vlans(), ipv6(), resolverOperations(), remoteAccess(),
              managementOperations(), boardOperations(), lifecycle()}) {
            rows.insert(rows.end(), group.begin(), group.end());
        }
        return rows;
    }();
    return all;
}
