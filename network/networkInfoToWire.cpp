#include "network/networkInfoToWire.h"

#include <cstring>

namespace {

rpcVlanMode vlanMode(std::uint32_t mode) {
    switch (mode) {
        case 1:
            return rpcVlanTagged;
        case 2:
            return rpcVlanNative;
        default:
            return rpcVlanNone;
    }
}

bool_t flag(std::uint32_t value) { return static_cast<bool_t>(value); }

}  // namespace

void toWire(const Network::NetworkInfo& info, rpcNetworkInfo& out) {
    out.ipAddress = info.ipAddr;
    out.netmask = info.netmask;
    std::memcpy(out.macAddress.octets, info.macAddr, sizeof out.macAddress.octets);
    std::memcpy(out.macAddress2.octets, info.spareMacAddr, sizeof out.macAddress2.octets);
    out.dhcpEnabled = flag(info.dhcpEnabled);
    out.vendorClassEnabled = flag(info.vendorClassEnabled);
    out.mngVlanId = info.mngVlanId;
    out.option82Enabled = flag(info.option82Enabled);
    out.mngVlanMode = rpcVlanNone;
    out.defVid = info.defVid;
    out.defVlanMode = vlanMode(info.defVlanMode);
}
