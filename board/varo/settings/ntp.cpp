#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/ntpRecords.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>

namespace varo {

namespace {

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
