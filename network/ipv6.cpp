// IPv6 address and gateway of the management interface, and its DHCPv6 client. Addresses are texts
// here; varoLib judges them.

#include "network/Network.h"
#include "network/boundedCopy.h"
#include "network/dhcpRecord.h"
#include "varo/varoLib.h"

#include <cstddef>

namespace {

/// Characters that getIpv6Addr hands out, the terminator not counted.
constexpr std::size_t listLimit = 1999;
constexpr std::size_t gatewayLimit = 99;

}  // namespace

int Network::setIpv6Addr(char* ipv6Addr, unsigned int prefixLength) {
    return withExclusiveLock([&] {
        if (reportIf(ipv6Addr == nullptr,
                     "[networkBLE]: setIpv6Addr failed! One of input args is NULL. ipv6Addr: %p\n",
                     address(ipv6Addr))) {
            return -1;
        }
        varoLib_s_ipv6 ipv6{};
        copyBounded(ipv6.ipv6Addr, ipv6Addr);
        ipv6.prefixLen = prefixLength;
        const int status = varoSetIpv6Addr(&ipv6);
        return resultOf(status,
                        "[networkBLE]: setIpv6Addr: varoSetIpv6Addr has failed! Return value: %d\n",
                        status);
    });
}

int Network::setIpv6Gw(char* gateway) {
    return withExclusiveLock([&] {
        if (reportIf(gateway == nullptr,
                     "[networkBLE]: setIpv6Gw failed! One of input args is NULL. ipv6Gw: %p\n",
                     address(gateway))) {
            return -1;
        }
        varoLib_s_ipv6 ipv6{};
        copyBounded(ipv6.ipv6Gw, gateway);
        const int status = varoSetIpv6Gw(&ipv6);
        // The doubled word is part of the message.
        return resultOf(
            status, "[networkBLE]: setIpv6ipv6Gw: varoSetIpv6ipv6Gw has failed! Return value: %d\n",
            status);
    });
}

int Network::removeIpv6Addr() {
    return withExclusiveLock([&] {
        const int status = varoRemoveIpv6Addr();
        return resultOf(
            status,
            "[networkBLE]: removeIpv6Addr: varoRemoveIpv6Addr has failed! Return value: %d\n",
            status);
    });
}

int Network::removeIpv6Gw() {
    return withExclusiveLock([&] {
        const int status = varoRemoveIpv6Gw();
        return resultOf(
            status, "[networkBLE]: removeIpv6Gw: varoRemoveIpv6Gw has failed! Return value: %d\n",
            status);
    });
}

int Network::getIpv6Addr(char* addresses, char* gateway) {
    return withSharedLock([&] {
        varoLib_s_ipv6 ipv6{};
        if (reportIf(varoGetIpv6(&ipv6) != 0,
                     "[networkBLE]: getIpv6Addr: varoGetIpv6 has failed!\n")) {
            return -1;
        }
        copyBounded(addresses, ipv6.ipv6AddrList, listLimit);
        copyBounded(gateway, ipv6.ipv6Gw, gatewayLimit);
        return 0;
    });
}

int Network::getNetworkInfoIpv6(NetworkInfoIpv6* info) {
    return withSharedLock([&] {
        if (reportIf(
                info == nullptr,
                "[networkBLE]: getNetworkInfoIpv6 failed! One of input args is NULL. info: %p\n",
                address(info))) {
            return -1;
        }
        *info = {};
        varoLib_s_ipv6 ipv6{};
        if (varoGetIpv6(&ipv6) == 0) {
            copyBounded(info->ipv6Addr, ipv6.ipv6Addr);
            info->prefixLen = ipv6.prefixLen;
            copyBounded(info->ipv6Gw, ipv6.ipv6Gw);
        }
        return 0;
    });
}

int Network::getIPv6Proto(bool* state) {
    return withSharedLock([&] {
        if (reportIf(state == nullptr,
                     "[networkBLE]: getIPv6Proto failed! One of input args is NULL. state: %p\n",
                     address(state))) {
            return -1;
        }
        varoLib_s_dhcp6 dhcp{};
        const int status = varoGetDhcp6(&dhcp);
        const bool failed = reportIf(
            status != 0,
            "[networkBLE]: getIPv6Proto: varoGetDhcp6 has failed: rv=%d, DHCP IPv6 default value is ON\n",
            status);
        *state = failed || dhcp.dhcpEnabled != 0;
        return 0;
    });
}

/// The switch works under the shared lock.
int Network::setIPv6Proto(bool on) {
    return withSharedLock([&] {
        varoLib_s_dhcp6 dhcp = readDhcpForUpdate(varoGetDhcp6);
        dhcp.dhcpEnabled = on ? 1 : 0;
        const int status = varoUpdateDhcp6(&dhcp);
        trace("[networkBLE]: setIPv6Proto: return value for varoUpdateDhcp6: %d\n", status);
        return resultOf(status);
    });
}
