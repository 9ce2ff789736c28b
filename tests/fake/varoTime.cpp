// The configuration library's calls for the SNTP client and the time zone, as far as the product
// imports them.

#include "fake/wholeRecord.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <cstring>

using fake::describe;
using fake::Platform;
using fake::readWhole;
using fake::refuse;
using fake::updateWhole;

namespace {

constexpr int dhcpSource = 1;
constexpr int cliSource = 2;

fake::TimeSettings& settings() { return Platform::current().time; }

bool isSource(int source) { return source == dhcpSource || source == cliSource; }

/// A read by source: 0 lets the library choose, which takes the management configuration where
/// there is one.
template <class Record>
int readSource(const char* function, std::map<int, Record>& bySource, int* source, Record* record) {
    const int asked = *source;
    if (asked != 0 && !isSource(asked)) {
        return refuse(function, std::to_string(asked));
    }
    return Platform::current().call(function, std::to_string(asked), [&] {
        const int chosen = bySource.contains(cliSource) ? cliSource : dhcpSource;
        *source = asked != 0 ? asked : chosen;
        *record = bySource[*source];
        return fmt::format("{} {}", *source, describe(*record));
    });
}

template <class Record>
int updateSource(const char* function, std::map<int, Record>& bySource, int source,
                 const Record* record) {
    const std::string arguments = fmt::format("{}, {}", source, describe(*record));
    if (!isSource(source)) {
        return refuse(function, arguments);
    }
    return Platform::current().call(function, arguments, [&] { bySource[source] = *record; });
}

/// A read of the client's status, of which there is one.
template <class Record>
int readStatus(const char* function, const Record& status, int* source, Record* record) {
    const int asked = *source;
    return Platform::current().call(function, std::to_string(asked), [&] {
        *source = cliSource;
        *record = status;
        return fmt::format("{} {}", *source, describe(*record));
    });
}

}  // namespace

int varoGetNtpWS(int* source, rpcSntpConfig* config) {
    return readSource("varoGetNtpWS", settings().byAddress, source, config);
}

int varoUpdateNtpWS(int source, rpcSntpConfig* config) {
    return updateSource("varoUpdateNtpWS", settings().byAddress, source, config);
}

int varoGetNtpHost(int* source, rpcSntpConfigHost* config) {
    return readSource("varoGetNtpHost", settings().byHost, source, config);
}

int varoUpdateNtpHost(int source, rpcSntpConfigHost* config) {
    return updateSource("varoUpdateNtpHost", settings().byHost, source, config);
}

int varoDefNtpHost(int source, rpcSntpConfigHost* config) {
    return Platform::current().call("varoDefNtpHost", std::to_string(source), [&] {
        *config = Platform::current().factory.sntp;
        return describe(*config);
    });
}

int varoGetNtpStatsWS(int* source, rpcSntpInfo* info) {
    return readStatus("varoGetNtpStatsWS", settings().info, source, info);
}

int varoGetNtpHostStats(int* source, rpcSntpInfoHost* info) {
    return readStatus("varoGetNtpHostStats", settings().infoHost, source, info);
}

int varoGetSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return readWhole("varoGetSntpTimeZone", settings().zone, zone, settings().zoneLeftByFailure);
}

int varoUpdateSntpTimeZone(varoLib_s_sntpTimeZone* zone) {
    return updateWhole("varoUpdateSntpTimeZone", settings().zone, zone);
}

int varoUpdateSntpTimeZoneAlt(varoLib_s_sntpTimeZone* zone) {
    return Platform::current().call("varoUpdateSntpTimeZoneAlt", describe(*zone), [&] {
        std::memcpy(settings().zone.name, zone->name, sizeof zone->name);
    });
}
