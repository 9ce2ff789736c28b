// IPv4 address, DHCP client and default gateway of the management interface. The kernel is
// varoLib's business; what is decided here is the order of its calls. None of the changes is a
// transaction: a failure leaves in place what was done before it.

#include "network/Network.h"
#include "network/dhcpRecord.h"
#include "platform/interfaces.h"
#include "platform/vlan.h"
#include "varo/varoLib.h"

#include <netinet/in.h>
#include <syslog.h>

#include <cstring>

namespace {

/// The auto-configuration client (SIGUSR1) is told of every new address.
constexpr int acsAddressSignal = 10;

/// Bytes of the name of a management port, the terminator included.
constexpr int portNameSize = 9;

/// A route to everywhere; without a gateway it is the question for one.
varoLib_s_route defaultRoute(std::uint32_t gateway) {
    varoLib_s_route route{};
    route.gateway = gateway;
    return route;
}

}  // namespace

int Network::setIp(unsigned int ipAddr, unsigned int netmask) {
    return withExclusiveLock([&] {
        NetworkInfo info{};
        if (getNetworkInfo(&info) != 0 || switchDhcp(false, "setIp") != 0) {
            return -1;
        }
        // DHCP stays off: to set the address that it handed out is to freeze it.
        if (info.ipAddr == ipAddr && info.netmask == netmask) {
            return 0;
        }
        if (ipAddr == 0) {
            return -1;
        }
        unsigned int gateway = 0;
        getGateway(&gateway);
        mngAddrChanged.firePre(ipAddr);  // the answers do not stop the change
        if (info.ipAddr != 0) {
            detachAddress(info.ipAddr, info.netmask);
        }
        if (!attachAddress(ipAddr, netmask)) {
            return -1;
        }
        varoSendSigToAcs(acsAddressSignal);
        currentIpAddr = ipAddr;
        mngAddrChanged.firePost(ipAddr);
        setGateway(gateway);  // the kernel dropped the default route with the old address
        return 0;
    });
}

int Network::setProtocol(bool dhcp) {
    return withExclusiveLock([&] { return switchDhcp(dhcp, "setProtocol"); });
}

int Network::switchDhcp(bool on, const char* operation) {
    varoLib_s_dhcp dhcp = readDhcpForUpdate(varoGetDhcp);
    dhcp.dhcpEnabled = on ? 1 : 0;
    const int updated = varoUpdateDhcp(&dhcp);
    trace("[networkBLE]: %s: return value for varoUpdateDhcp: %d\n", operation, updated);
    if (updated != 0) {
        return -1;
    }
    const int retreated = varoDhcpRetreatAlrServNotResponding();
    trace("[networkBLE]: %s: return value for varoDhcpRetreatAlrServNotResponding: %d\n", operation,
          retreated);
    return resultOf(retreated);
}

void Network::detachAddress(unsigned int ipAddr, unsigned int netmask) {
    varoLib_s_interface interface;
    if (getIntf(ipAddr, netmask, &interface) && varoDettachIpFromIntf(&interface) == 0) {
        trace("[networkBLE]: setIp: old ip address detached!\n");
    } else {
        networkBleSyslog(LOG_ERR, "[networkBLE]: setIp: faild to detach old ip address!\n");
    }
}

bool Network::attachAddress(unsigned int ipAddr, unsigned int netmask) {
    varoLib_s_interface interface;
    if (!getIntf(ipAddr, netmask, &interface) || varoAttachIpToIntf(&interface) != 0) {
        networkBleSyslog(LOG_ERR, "[networkBLE]: setIp: faild to attach new ip address!\n");
        return false;
    }
    trace("[networkBLE]: setIp: new ip address attached!\n");
    return true;
}

int Network::setGateway(unsigned int gateway) {
    return withExclusiveLock([&] {
        trace("[networkBLE]: setGateway: after lock\n");
        unsigned int current = 0;
        if (getGateway(&current) != 0) {
            return -1;
        }
        if (current == gateway) {
            return 0;
        }
        if (current != 0) {
            varoLib_s_route old = defaultRoute(current);
            if (varoDeleteRoute(&old) != 0) {
                trace("[networkBLE]: setGateway: unable to delete old default gateway\n");
                return -1;
            }
        }
        if (gateway == 0) {
            return 0;
        }
        varoLib_s_route route = defaultRoute(gateway);
        if (varoAddRoute(&route) != 0) {
            trace("[networkBLE]: setGateway: failed to add new default gateway\n");
            return -1;
        }
        trace("[networkBLE]: setGateway: new default gateway added!\n");
        return 0;
    });
}

int Network::getGateway(unsigned int* gateway) {
    return withSharedLock([&] {
        if (reportIf(gateway == nullptr,
                     "[networkBLE]: getGateway failed! One of input args is NULL. gw: %p\n",
                     address(gateway))) {
            return -1;
        }
        *gateway = 0;
        varoLib_s_route route = defaultRoute(0);
        if (varoGetRouteByDst(&route) == 0) {
            *gateway = route.gateway;
        }
        return 0;
    });
}

int Network::getNetworkInfo(NetworkInfo* info) {
    return withSharedLock([&] {
        if (reportIf(info == nullptr,
                     "[networkBLE]: getNetworkInfo failed! One of input args is NULL. info: %p\n",
                     address(info))) {
            return -1;
        }
        *info = {};
        fillDhcp(*info);
        fillAddress(*info);
        info->mngVlanId = mngVlanId;
        info->mngVlanMode = 0;
        trace("[networkBLE]: getNetworkInfo: vlanid=%d mngVlanMode=%d\n", info->mngVlanId,
              info->mngVlanMode);
        info->defVid = defConnectGetDefVid();
        info->defVlanMode = defConnectGetDefModeNative() == 0 ? 1 : 2;
        trace("[networkBLE]: getNetworkInfo: defVid=%d defVlanMode=%d\n", info->defVid,
              info->defVlanMode);
        return 0;
    });
}

void Network::fillDhcp(NetworkInfo& info) {
    varoLib_s_dhcp dhcp{};
    const int status = varoGetDhcp(&dhcp);
    if (reportIf(
            status != 0,
            "[networkBLE]: getNetworkInfo: varoGetDhcp has failed: rv=%d, DHCP default value is ON\n",
            status)) {
        info.dhcpEnabled = 1;
        return;
    }
    info.dhcpEnabled = dhcp.dhcpEnabled != 0;
    info.vendorClassEnabled = dhcp.vendorClassEnabled != 0;
    info.option82Enabled = dhcp.option82Enabled != 0;
}

void Network::fillAddress(NetworkInfo& info) {
    int portId = 0;
    if (interfaceMngGet(&portId) != 0) {
        trace("[networkBLE]: interfaceMngGet returned error\n");
    }
    trace("[networkBLE]: getNetworkInfo: portID: %d.\n", portId);
    varoLib_s_interface interface{};
    if (reportIf(
            interfaceLinuxnameGet(portId, portNameSize, interface.name) != 0,
            "[networkBLE]: getNetworkInfo: function interfaceLinuxnameGet has failed!portID: %d.\n",
            portId)) {
        return;
    }
    unsigned char mac[sizeof info.macAddr] = {};
    if (varoGetIfcMAC(interface.name, mac) == 0) {
        std::memcpy(info.macAddr, mac, sizeof info.macAddr);
    }
    if (varoGetInterface(&interface) == 0) {
        info.ipAddr = ntohl(interface.ipAddr);
        info.netmask = ntohl(interface.netmask);
    }
}

bool Network::getIntf(unsigned int ipAddr, unsigned int netmask, varoLib_s_interface* interface) {
    if (reportIf(interface == nullptr,
                 "[networkBLE]: getIntf failed! One of input args is NULL. intf: %p\n",
                 address(interface))) {
        return false;
    }
    *interface = {};
    interface->ipAddr = ipAddr;
    interface->netmask = netmask;
    int portId = 0;
    return interfaceMngGet(&portId) == 0 &&
           interfaceLinuxnameGet(portId, portNameSize, interface->name) == 0;
}

bool Network::correctNetmask(unsigned int* mask, bool negate) {
    constexpr unsigned int highestBit = 0x80000000;
    unsigned int prefix = 0;
    for (unsigned int bit = highestBit; (*mask & bit) != 0; bit >>= 1) {
        prefix |= bit;
    }
    trace("[networkBLE]: correctNetmask: before negation mask=0x%x\n", prefix);
    if (negate) {
        prefix = ~prefix;
    }
    trace("[networkBLE]: correctNetmask: after negation mask=0x%x\n", prefix);
    *mask = prefix;
    return true;
}

void Network::getIpmiBoardPos(unsigned int* position) {
    std::uint32_t read = 0;
    const int status = varoGetMyBoardPos(&read);
    const bool failed =
        reportIf(status != 0, "[networkBLE]: %s: varoGetMyBoardPos has failed: rv=%d\n",
                 "getIpmiBoardPos", status);
    *position = failed ? 0 : read;
}
