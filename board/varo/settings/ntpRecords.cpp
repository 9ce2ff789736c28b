#include "board/varo/settings/ntpRecords.h"

#include "board/varo/settings/valueChecks.h"
#include "board/varo/store/Column.h"
#include "board/varo/varoCodes.h"
#include "platform/CZuUtil.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace varo {

namespace {

enum AddressType : int { hostName = 0, ipv4Address = 1, ipv6Address = 2 };

constexpr int clientIsOff = 0;
constexpr int notSynchronised = 3;  // leap indicator of RFC 5905

std::optional<std::uint32_t> ipv4Of(std::string_view text) {
    in_addr address{};
    if (inet_pton(AF_INET, std::string(text).c_str(), &address) != 1) {
        return {};
    }
    return ntohl(address.s_addr);
}

/// Not "this network" (0.0.0.0/8), not a group, not reserved, not the broadcast address.
bool isHost(std::uint32_t address) {
    constexpr std::uint32_t firstUsed = 0x01000000;
    constexpr std::uint32_t firstGroup = 0xE0000000;
    return address >= firstUsed && address < firstGroup;
}

bool isHost(const in6_addr& address) {
    return !IN6_IS_ADDR_UNSPECIFIED(&address) && !IN6_IS_ADDR_MULTICAST(&address);
}

bool isIpv6Host(const std::string& text) {
    in6_addr address{};
    return inet_pton(AF_INET6, text.c_str(), &address) == 1 && isHost(address);
}

AddressType typeOf(const std::string& host) {
    if (CZuUtil::checkIpv4Addr(host) && isHost(ipv4Of(host).value_or(0))) {
        return ipv4Address;
    }
    if (CZuUtil::checkIpv6Addr(host) && isIpv6Host(host)) {
        return ipv6Address;
    }
    if (CZuUtil::checkIpHostname(host)) {
        return hostName;
    }
    throw Failure(invalidValue, "a server is neither a host name nor the address of one host");
}

void checkMode(int mode) { checkSwitch("mode", mode); }

rpcSntpSrvHost checkedServer(const rpcSntpSrvHost& server) {
    rpcSntpSrvHost checked{};
    const std::string_view host = textIn("server", server.host);
    if (host.empty()) {
        return checked;
    }
    copyInto(checked.host, host);
    checked.addressType = typeOf(checked.host);
    if (server.ntpVersion != 0) {
        checkRange("protocol version", server.ntpVersion, 3, 4);
    }
    checked.ntpVersion = server.ntpVersion;
    checkSwitch("priority", server.priority);
    checked.priority = server.priority;
    return checked;
}

/// Whatever a program told is terminated for those who read it.
template <std::size_t size>
std::string_view bounded(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

template <std::size_t size>
void copyBounded(char (&to)[size], const char (&from)[size]) {
    copyInto(to, bounded(from));
}

}  // namespace

rpcSntpConfigHost checkedNtp(const rpcSntpConfigHost& config) {
    checkMode(config.mode);
    rpcSntpConfigHost checked{};
    checked.mode = config.mode;
    auto place = std::begin(checked.servers);
    for (const rpcSntpSrvHost& server : config.servers) {
        *place++ = checkedServer(server);
    }
    return checked;
}

rpcSntpConfigHost fromIpv4View(const rpcSntpConfig& config) {
    rpcSntpConfigHost converted{};
    converted.mode = config.mode;
    auto place = std::begin(converted.servers);
    for (const rpcSntpSrv& server : config.servers) {
        rpcSntpSrvHost& entry = *place++;
        if (server.ipAddress == 0) {
            continue;
        }
        copyInto(entry.host, ipv4Text(server.ipAddress));
        entry.ntpVersion = server.ntpVersion;
        entry.priority = server.priority;
        entry.addressType = ipv4Address;
    }
    return converted;
}

rpcSntpConfig ipv4View(const rpcSntpConfigHost& config) {
    rpcSntpConfig view{};
    view.mode = config.mode;
    auto place = std::begin(view.servers);
    for (const rpcSntpSrvHost& server : config.servers) {
        const auto address = ipv4Of(bounded(server.host));
        if (address && place != std::end(view.servers)) {
            *place++ = {*address, server.ntpVersion, server.priority};
        }
    }
    return view;
}

rpcSntpInfo ipv4View(const rpcSntpInfoHost& info) {
    rpcSntpInfo view{};
    view.client = {
        .state = info.client.state,
        .mode = info.client.mode,
        .leapIndicator = info.client.leapIndicator,
        .stratum = info.client.stratum,
        .pollInterval = info.client.pollInterval,
        .offset = info.client.offset,
        .referenceAddress = ipv4Of(bounded(info.client.referenceHost)).value_or(0),
        .delay = info.client.delay,
        .dispersion = info.client.dispersion,
        .lastUpdate = {},
    };
    copyBounded(view.client.lastUpdate, info.client.lastUpdate);
    view.unicast = info.unicast;
    auto place = std::begin(view.servers);
    for (const rpcSntpSrvInfoHost& server : info.servers) {
        const auto address = ipv4Of(bounded(server.host));
        if (address && place != std::end(view.servers)) {
            *place++ = {server.state,        *address,      server.stratum,
                        server.reachability, server.offset, server.delay};
        }
    }
    return view;
}

rpcSntpInfoHost clientOff(const rpcSntpConfigHost& config) {
    rpcSntpInfoHost info{};
    info.client.state = clientIsOff;
    info.client.mode = config.mode;
    info.client.leapIndicator = notSynchronised;
    auto place = std::begin(info.servers);
    for (const rpcSntpSrvHost& server : config.servers) {
        copyBounded(place++->host, server.host);
    }
    return info;
}

}  // namespace varo
