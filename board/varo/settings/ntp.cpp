#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "board/varo/store/Column.h"
#include "board/varo/varoCodes.h"
#include "platform/CZuUtil.h"
#include "varo/varoLib.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace varo {

namespace {

enum AddressType : int { hostName = 0, ipv4Address = 1, ipv6Address = 2 };

constexpr int clientIsOff = 0;
constexpr int notSynchronised = 3;  // leap indicator of RFC 5905

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
    if (CZuUtil::checkIpv4Addr(host) && isHost(parsedIpv4(host).value_or(0))) {
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

/// The record as it is stored: address types as the texts have them, entries without a server
/// cleared. Throws Failure (invalidValue) for a mode, a version or a priority out of range, and for
/// a server that is neither a host name nor the address of one host.
rpcSntpConfigHost checkedNtp(const rpcSntpConfigHost& config) {
    checkSwitch("mode", config.mode);
    rpcSntpConfigHost checked{};
    checked.mode = config.mode;
    auto place = std::begin(checked.servers);
    for (const rpcSntpSrvHost& server : config.servers) {
        *place++ = checkedServer(server);
    }
    return checked;
}

// The SNTP client has one configuration, in which servers are host texts. Records with IPv4
// addresses are a view of it: they show the servers whose text is an IPv4 address, one after the
// other as far as they fit, and leave the others out.

/// The configuration that has the servers of the IPv4 record, and no others.
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
        const auto address = parsedIpv4(bounded(server.host));
        if (address && place != std::end(view.servers)) {
            *place++ = {*address, server.ntpVersion, server.priority};
        }
    }
    return view;
}

/// The reference, too, is shown if its text is an IPv4 address, and is 0 otherwise.
rpcSntpInfo ipv4View(const rpcSntpInfoHost& info) {
    rpcSntpInfo view{};
    view.client = {
        .state = info.client.state,
        .mode = info.client.mode,
        .leapIndicator = info.client.leapIndicator,
        .stratum = info.client.stratum,
        .pollInterval = info.client.pollInterval,
        .offset = info.client.offset,
        .referenceAddress = parsedIpv4(bounded(info.client.referenceHost)).value_or(0),
        .delay = info.client.delay,
        .dispersion = info.client.dispersion,
        .lastUpdate = {},
    };
    copyBounded(view.client.lastUpdate, info.client.lastUpdate);
    view.unicast = info.unicast;
    auto place = std::begin(view.servers);
    for (const rpcSntpSrvInfoHost& server : info.servers) {
        const auto address = parsedIpv4(bounded(server.host));
        if (address && place != std::end(view.servers)) {
            *place++ = {server.state,        *address,      server.stratum,
                        server.reachability, server.offset, server.delay};
        }
    }
    return view;
}

/// Status of a client that does not run.
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

using Config = rpcSntpConfigHost;
using Server = rpcSntpSrvHost;

bool namesServer(const Config& config) {
    return std::any_of(std::begin(config.servers), std::end(config.servers),
                       [](const Server& server) { return server.host[0] != '\0'; });
}

void store(int source, const Config& config) {
    const int row = storedSource(source);
    const Config checked = checkedNtp(config);
    ntpSetting().store(Library::instance().change(), row, checked);
}

rpcSntpInfoHost fromClient(const Configuration& configuration, const Config& config) {
    const auto& provider = configuration.appliers.ntpStatistics;
    if (!provider) {
        return clientOff(config);
    }
    try {
        return provider(config);
    } catch (const std::exception& error) {
        throw Failure(systemFailed,
                      fmt::format("the status of the SNTP client is not known: {}", error.what()));
    }
}

/// The client runs with the configuration in force: for that of another source it is off.
rpcSntpInfoHost statistics(int& source) {
    if (source != libraryChooses) {
        storedSource(source);
    }
    const auto opened = Library::instance().opened();
    auto session = std::make_optional(opened->store.session());
    const auto inForce = ntpSetting().inForce(*session);
    if (source != libraryChooses && source != inForce.source) {
        return clientOff(session->read(ntpSetting().group(), source));
    }
    // The client may take a second to answer: nobody is to wait for the store that long.
    session.reset();
    const rpcSntpInfoHost info = fromClient(opened->configuration, inForce.record);
    source = inForce.source;
    return info;
}

}  // namespace

const SettingBySource<rpcSntpConfigHost>& ntpSetting() {
    static const auto& setting = *new SettingBySource<Config>({
        .group = {"ntp",
                  Rows::bySource,
                  {},
                  {
                      column("mode", &Config::mode),
                      entries("server", &Config::servers,
                              {
                                  column("host", &Server::host),
                                  column("version", &Server::ntpVersion),
                                  column("preferred", &Server::priority),
                                  column("address_type", &Server::addressType),
                              }),
                  }},
        .namesAnything = namesServer,
        .apply = toHost("SNTP", &Appliers::ntp),
    });
    return setting;
}

}  // namespace varo

int varoGetNtpWS(int* source, rpcSntpConfig* config) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        rpcSntpConfig& record = varo::required(config);
        record = varo::ipv4View(varo::ntpSetting().stored(wanted));
    });
}

/// A record is whole: servers that the source had by name are gone.
int varoUpdateNtpWS(int source, rpcSntpConfig* config) {
    return varo::answer(__func__,
                        [&] { varo::store(source, varo::fromIpv4View(varo::required(config))); });
}

int varoGetNtpHost(int* source, rpcSntpConfigHost* config) {
    return varo::ntpSetting().read(__func__, source, config);
}

int varoUpdateNtpHost(int source, rpcSntpConfigHost* config) {
    return varo::answer(__func__, [&] { varo::store(source, varo::required(config)); });
}

int varoDefNtpHost(int source, rpcSntpConfigHost* config) {
    return varo::ntpSetting().fillFactory(__func__, source, config);
}

int varoGetNtpStatsWS(int* source, rpcSntpInfo* info) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        rpcSntpInfo& record = varo::required(info);
        record = varo::ipv4View(varo::statistics(wanted));
    });
}

int varoGetNtpHostStats(int* source, rpcSntpInfoHost* info) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        rpcSntpInfoHost& record = varo::required(info);
        record = varo::statistics(wanted);
    });
}
