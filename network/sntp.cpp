// SNTP client: configuration and status, with servers by IPv4 address and by host text. Changes
// take the shared lock: two clients may make them at once, and varoLib copes with that. Nothing is
// logged here.

#include "network/Network.h"
#include "network/varoSources.h"
#include "platform/CZuUtil.h"
#include "varo/varoLib.h"

#include <cstring>
#include <string>

namespace {

// What CZuUtil::getIpAddrType tells of a text.
constexpr int ipv4Text = 1;
constexpr int ipv6Text = 2;
constexpr int hostNameText = 3;

/// Sets the entry's address type; an empty entry keeps the one it has. Returns 0, or what is wrong
/// with the host text.
int classify(rpcSntpSrvHost& server) {
    const std::string host(server.host, strnlen(server.host, sizeof server.host));
    if (host.empty()) {
        return 0;
    }
    bool isValid = false;
    int addressType = 0;
    switch (CZuUtil::getIpAddrType(host)) {
        case ipv6Text:
            isValid = CZuUtil::checkIpv6Addr(host);
            addressType = 2;
            break;
        case ipv4Text:
            isValid = CZuUtil::checkIpv4Addr(host);
            addressType = 1;
            break;
        case hostNameText:
            isValid = CZuUtil::checkIpHostname(host);
            addressType = 0;
            break;
        default:
            return rpcNetworkUnknownAddressType;
    }
    if (!isValid) {
        return rpcNetworkInvalidAddress;
    }
    server.addressType = addressType;
    return 0;
}

}  // namespace

int Network::updateSntpConfig(rpcSntpConfig* config) {
    return withSharedLock([&] { return resultOf(varoUpdateNtpWS(cliSource, config)); });
}

/// The first bad entry ends the operation: nothing is stored, and the types written into the
/// caller's record before it stay there.
int Network::updateSntpConfigHost(rpcSntpConfigHost* config) {
    return withSharedLock([&] {
        for (rpcSntpSrvHost& server : config->servers) {
            const int refusal = classify(server);
            if (refusal != 0) {
                return refusal;
            }
        }
        return resultOf(varoUpdateNtpHost(cliSource, config));
    });
}

int Network::getSntpConfig(rpcSntpConfig* config) {
    return withSharedLock([&] {
        int source = anySource;
        return resultOf(varoGetNtpWS(&source, config));
    });
}

// Configurations are read from the source that the caller asks for, status from whichever there is.

int Network::getSntpConfigWS(int* source, rpcSntpConfig* config) {
    return withSharedLock([&] { return resultOf(varoGetNtpWS(source, config)); });
}

int Network::getSntpConfigWSHost(int* source, rpcSntpConfigHost* config) {
    return withSharedLock([&] { return resultOf(varoGetNtpHost(source, config)); });
}

int Network::getSntpInfo(rpcSntpInfo* info) {
    return withSharedLock([&] {
        int source = anySource;
        return resultOf(varoGetNtpStatsWS(&source, info));
    });
}

int Network::getSntpInfoWS(int* source, rpcSntpInfo* info) {
    return withSharedLock([&] {
        *source = anySource;
        return resultOf(varoGetNtpStatsWS(source, info));
    });
}

int Network::getSntpInfoWSHost(int* source, rpcSntpInfoHost* info) {
    return withSharedLock([&] {
        *source = anySource;
        return resultOf(varoGetNtpHostStats(source, info));
    });
}
