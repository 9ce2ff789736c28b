// The configuration library's calls for the addressing of the management interface, as far as the
// product imports them.

#include "fake/wholeRecord.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <netinet/in.h>

#include <cstring>

using fake::describe;
using fake::Platform;
using fake::quoted;
using fake::readWhole;
using fake::refused;
using fake::updateWhole;

namespace {

bool isTerminated(const auto& text) { return std::memchr(text, '\0', sizeof text) != nullptr; }

}  // namespace

int varoGetMyBoardPos(std::uint32_t* position) {
    Platform& platform = Platform::current();
    return platform.call("varoGetMyBoardPos", "", [&] {
        *position = platform.addressing.boardPosition;
        return std::to_string(*position);
    });
}

int varoGetDhcp(varoLib_s_dhcp* dhcp) {
    const auto& addressing = Platform::current().addressing;
    return readWhole("varoGetDhcp", addressing.dhcp, dhcp, addressing.dhcpLeftByFailure);
}

int varoUpdateDhcp(varoLib_s_dhcp* dhcp) {
    return updateWhole("varoUpdateDhcp", Platform::current().addressing.dhcp, dhcp);
}

int varoDhcpRetreatAlrServNotResponding() {
    return Platform::current().call("varoDhcpRetreatAlrServNotResponding", "", [] {});
}

int varoAttachIpToIntf(varoLib_s_interface* interface) {
    auto& interfaces = Platform::current().addressing.interfaces;
    const std::string arguments = fake::describeRequest(*interface);
    if (!isTerminated(interface->name) || !interfaces.contains(interface->name)) {
        return Platform::current().refuse("varoAttachIpToIntf", arguments);
    }
    return Platform::current().call("varoAttachIpToIntf", arguments, [&] {
        interfaces[interface->name] = {interface->ipAddr, interface->netmask};
    });
}

/// The kernel drops the default route with the address that it goes by.
int varoDettachIpFromIntf(varoLib_s_interface* interface) {
    auto& addressing = Platform::current().addressing;
    const std::string arguments = fake::describeRequest(*interface);
    const auto found = addressing.interfaces.find(interface->name);
    if (found == addressing.interfaces.end() || found->second.address != interface->ipAddr) {
        return Platform::current().refuse("varoDettachIpFromIntf", arguments);
    }
    return Platform::current().call("varoDettachIpFromIntf", arguments, [&] {
        found->second = {0, 0};
        addressing.defaultGateway = 0;
    });
}

int varoGetInterface(varoLib_s_interface* interface) {
    if (interface == nullptr || !isTerminated(interface->name)) {
        return refused;
    }
    const auto& interfaces = Platform::current().addressing.interfaces;
    const auto found = interfaces.find(interface->name);
    if (found == interfaces.end()) {
        return Platform::current().refuse("varoGetInterface", quoted(interface->name));
    }
    const auto put = [interface](const fake::InterfaceAddress& address) {
        interface->ipAddr = htonl(address.address);
        interface->netmask = htonl(address.netmask);
    };
    const int status = Platform::current().call("varoGetInterface", quoted(interface->name), [&] {
        put(found->second);
        return describe(*interface);
    });
    if (const auto& left = Platform::current().addressing.addressLeftByFailure;
        status != 0 && left) {
        put(*left);
    }
    return status;
}

int varoGetIfcMAC(const char* name, unsigned char* mac) {
    const auto& macAddresses = Platform::current().addressing.macAddresses;
    const auto found = macAddresses.find(name);
    if (found == macAddresses.end()) {
        return Platform::current().refuse("varoGetIfcMAC", quoted(name));
    }
    const int status = Platform::current().call("varoGetIfcMAC", quoted(name), [&] {
        std::memcpy(mac, found->second.data(), found->second.size());
        return fmt::format("{:02x}", fmt::join(found->second, ":"));
    });
    if (const auto& left = Platform::current().addressing.macLeftByFailure; status != 0 && left) {
        std::memcpy(mac, left->data(), left->size());
    }
    return status;
}

int varoAddRoute(varoLib_s_route* route) {
    auto& gateway = Platform::current().addressing.defaultGateway;
    if (route->destination != 0 || route->gateway == 0 || gateway != 0) {
        return Platform::current().refuse("varoAddRoute", describe(*route));
    }
    return Platform::current().call("varoAddRoute", describe(*route),
                                    [&] { gateway = route->gateway; });
}

int varoDeleteRoute(varoLib_s_route* route) {
    auto& gateway = Platform::current().addressing.defaultGateway;
    if (route->destination != 0 || gateway == 0 || route->gateway != gateway) {
        return Platform::current().refuse("varoDeleteRoute", describe(*route));
    }
    return Platform::current().call("varoDeleteRoute", describe(*route), [&] { gateway = 0; });
}

int varoGetRouteByDst(varoLib_s_route* route) {
    const auto gateway = Platform::current().addressing.defaultGateway;
    if (route->destination != 0 || gateway == 0) {
        return Platform::current().refuse("varoGetRouteByDst", describe(*route));
    }
    return Platform::current().call("varoGetRouteByDst", describe(*route), [&] {
        route->gateway = gateway;
        return fake::dotted(gateway);
    });
}

int varoSendSigToAcs(int signal) {
    return Platform::current().call("varoSendSigToAcs", std::to_string(signal));
}

int varoGetIpv6(varoLib_s_ipv6* ipv6) {
    const auto& addressing = Platform::current().addressing;
    return readWhole("varoGetIpv6", addressing.ipv6, ipv6, addressing.ipv6LeftByFailure);
}

int varoSetIpv6Addr(varoLib_s_ipv6* ipv6) {
    auto& state = Platform::current().addressing.ipv6;
    return Platform::current().call("varoSetIpv6Addr", describe(*ipv6), [&] {
        std::memcpy(state.ipv6Addr, ipv6->ipv6Addr, sizeof state.ipv6Addr);
        state.prefixLen = ipv6->prefixLen;
        const std::string list = fmt::format("{}/{}", state.ipv6Addr, state.prefixLen);
        std::memcpy(state.ipv6AddrList, list.c_str(), list.size() + 1);
    });
}

int varoSetIpv6Gw(varoLib_s_ipv6* ipv6) {
    auto& state = Platform::current().addressing.ipv6;
    return Platform::current().call("varoSetIpv6Gw", describe(*ipv6), [&] {
        std::memcpy(state.ipv6Gw, ipv6->ipv6Gw, sizeof state.ipv6Gw);
    });
}

int varoRemoveIpv6Addr() {
    return Platform::current().call("varoRemoveIpv6Addr", "", [] {
        auto& state = Platform::current().addressing.ipv6;
        state.ipv6Addr[0] = '\0';
        state.prefixLen = 0;
        state.ipv6AddrList[0] = '\0';
    });
}

int varoRemoveIpv6Gw() {
    return Platform::current().call("varoRemoveIpv6Gw", "",
                                    [] { Platform::current().addressing.ipv6.ipv6Gw[0] = '\0'; });
}

int varoGetDhcp6(varoLib_s_dhcp6* dhcp) {
    return readWhole("varoGetDhcp6", Platform::current().addressing.dhcp6, dhcp);
}

int varoUpdateDhcp6(varoLib_s_dhcp6* dhcp) {
    return updateWhole("varoUpdateDhcp6", Platform::current().addressing.dhcp6, dhcp);
}
