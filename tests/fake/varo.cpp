// The configuration library, as far as the product imports it.

#include "fake/Platform.h"
#include "fake/describe.h"
#include "varo/varoLib.h"

#include <fmt/core.h>

#include <cstring>

using fake::describe;
using fake::Platform;
using fake::quoted;

namespace {

constexpr int refused = 1;
constexpr int dhcpSource = 1;
constexpr int cliSource = 2;

bool isSource(int source) { return source == dhcpSource || source == cliSource; }

bool isTerminated(const auto&... texts) {
    return ((std::memchr(texts, '\0', sizeof texts) != nullptr) && ...);
}

bool namesAnything(const varoLib_s_dns& dns) {
    return dns.domain[0] != '\0' || dns.ip_pri != 0 || dns.ip_sec != 0;
}

bool namesAnything(const varoLib_s_dns6& dns) {
    return dns.domain[0] != '\0' || dns.ipv6_pri[0] != '\0' || dns.ipv6_sec[0] != '\0';
}

/// The management configuration, unless only the DHCP client's names anything.
template <class Record>
int choose(std::map<int, Record>& bySource) {
    return !namesAnything(bySource[cliSource]) && namesAnything(bySource[dhcpSource]) ? dhcpSource
                                                                                      : cliSource;
}

/// A read by source: 0 lets the library choose.
template <class Record>
int read(const char* function, std::map<int, Record>& bySource,
         const std::optional<Record>& leftByFailure, int* source, Record* record) {
    Platform& platform = Platform::current();
    if (source == nullptr || record == nullptr || (*source != 0 && !isSource(*source))) {
        return platform.journal.write(fmt::format("{}: refused", function)), refused;
    }
    const int asked = *source;
    const int status = platform.call(function, fmt::format("{}", asked), [&] {
        const int taken = asked != 0 ? asked : platform.sourceInForce.value_or(choose(bySource));
        *record = bySource[taken];
        *source = platform.reportedSource.value_or(taken);
        return fmt::format("{} {}", *source, describe(*record));
    });
    if (status != 0 && leftByFailure) {
        *record = *leftByFailure;
    }
    if (status != 0 && platform.sourceLeftByFailure) {
        *source = *platform.sourceLeftByFailure;
    }
    return status;
}

template <class Record>
int update(const char* function, std::map<int, Record>& bySource, int source, Record* record,
           bool isValid) {
    Platform& platform = Platform::current();
    if (record == nullptr || !isSource(source) || !isValid) {
        return platform.journal.write(fmt::format("{}({}): refused", function, source)), refused;
    }
    return platform.call(function, fmt::format("{}, {}", source, describe(*record)),
                         [&] { bySource[source] = *record; });
}

}  // namespace

int varoLibInit() { return Platform::current().call("varoLibInit", ""); }

void varoLibDestroy() { Platform::current().journal.write("varoLibDestroy()"); }

int varoGetInternalConfig(varoLib_s_internalConfig* config) {
    Platform& platform = Platform::current();
    if (config == nullptr) {
        return refused;
    }
    return platform.call("varoGetInternalConfig", "", [&] {
        *config = platform.internalConfig;
        return describe(*config);
    });
}

int varoUpdateInternalConfig(varoLib_s_internalConfig* config, std::int16_t severity) {
    Platform& platform = Platform::current();
    if (config == nullptr) {
        return refused;
    }
    return platform.call("varoUpdateInternalConfig",
                         fmt::format("{}, {}", describe(*config), severity),
                         [&] { platform.internalConfig.severity = severity; });
}

int varoGetDnsWS(int* source, varoLib_s_dns* dns) {
    Platform& platform = Platform::current();
    return read("varoGetDnsWS", platform.dns, platform.dnsLeftByFailure, source, dns);
}

int varoUpdateDnsWS(int source, varoLib_s_dns* dns) {
    return update("varoUpdateDnsWS", Platform::current().dns, source, dns,
                  dns != nullptr && isTerminated(dns->domain));
}

int varoGetDns6(int* source, varoLib_s_dns6* dns) {
    Platform& platform = Platform::current();
    return read("varoGetDns6", platform.dns6, platform.dns6LeftByFailure, source, dns);
}

int varoUpdateDns6(int source, varoLib_s_dns6* dns) {
    return update("varoUpdateDns6", Platform::current().dns6, source, dns,
                  dns != nullptr && isTerminated(dns->domain, dns->ipv6_pri, dns->ipv6_sec));
}
