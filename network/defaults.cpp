// Return to factory settings: for each group of settings the library fills a record with the
// factory values and writes it as the configuration. A failure in one group never stops the next
// one.

#include "framework/BLLManager.h"
#include "framework/CliConfig.h"
#include "network/Network.h"
#include "platform/features.h"
#include "varo/varoLib.h"

#include <syslog.h>

#include <cstring>

namespace {

constexpr const char* operation = "applyDefaultSettings";

/// The profile in which telnet and the auto-configuration client are off.
constexpr int cordProfile = 12;

constexpr int cliSource = 2;
constexpr int dhcpSource = 1;

bool isClearConfigInProgress() {
    return singleton<CliConfig>::instance().isClearConfigInProgress();
}

varoLib_s_sntpTimeZone factoryTimeZone() {
    varoLib_s_sntpTimeZone zone{};
    std::strcpy(zone.name, "NONE");
    zone.dstSMonth = 3;
    zone.dstSWeek = 4;
    zone.dstSDayInWeek = 7;
    zone.dstSTime = 200;
    zone.dstEMonth = 10;
    zone.dstEWeek = 5;
    zone.dstEDayInWeek = 7;
    zone.dstETime = 200;
    return zone;
}

}  // namespace

int Network::applyDefaultSettings() {
    networkBleSyslog(LOG_DEBUG, "[networkBLE]: %s: Inside function\n", operation);
    bool isDone = true;
    isDone &= defaultTimeZone();
    isDone &= defaultTelnet();
    isDone &= defaultGroup<varoLib_s_sshSrv>({"varoDefSshSrv", varoDefSshSrv},
                                             {"varoUpdateSshSrv", varoUpdateSshSrv});
    isDone &= defaultGroup<varoLib_s_ftpSrv>({"varoDefFtpSrv", varoDefFtpSrv},
                                             {"varoUpdateFtpSrv", varoUpdateFtpSrv});
    isDone &= defaultGroup<varoLib_s_subag>({"varoDefSubag", varoDefSubag},
                                            {"varoUpdateSubag", varoUpdateSubag});
    isDone &=
        defaultGroup<varoLib_s_snmpCommunity>({"varoDefSnmpCommunity", varoDefSnmpCommunity},
                                              {"varoUpdateSnmpCommunity", varoUpdateSnmpCommunity});
    isDone &= defaultGroup<varoLib_s_snmpSystem>({"varoDefSnmpSystem", varoDefSnmpSystem},
                                                 {"varoUpdateSnmpSystem", varoUpdateSnmpSystem});
    isDone &= defaultNtp();
    if (isClearConfigInProgress()) {
        networkRAClear();
    } else {
        isDone &= defaultResolver<varoLib_s_dns>({"varoDefDnsWS", varoDefDnsWS},
                                                 {"varoUpdateDnsWS", varoUpdateDnsWS});
        isDone &= defaultResolver<varoLib_s_dns6>({"varoDefDns6", varoDefDns6},
                                                  {"varoUpdateDns6", varoUpdateDns6});
        const int lastAcsStatus = defaultAcs(isDone);
        defaultWebServer(lastAcsStatus);
    }
    initVersComp();
    return isDone ? 1 : 0;
}

/// Reports a call of the library that failed. Whether it succeeded.
bool Network::isDefaultDone(const char* call, int status) {
    return !reportIf(status != 0, "[networkBLE]: %s: %s has failed! Return value: %d\n", operation,
                     call, status);
}

template <class Record>
bool Network::defaultGroup(const DefaultCall<Record>& fill, const DefaultCall<Record>& update) {
    Record record{};
    return isDefaultDone(fill.name, fill.call(&record)) &&
           isDefaultDone(update.name, update.call(&record));
}

/// Both sources get the factory values; the second is written even if the first cannot be.
template <class Record>
bool Network::defaultResolver(const DefaultSourceCall<Record>& fill,
                              const DefaultSourceCall<Record>& update) {
    Record record{};
    if (!isDefaultDone(fill.name, fill.call(cliSource, &record))) {
        return false;
    }
    const bool isCliDone = isDefaultDone(update.name, update.call(cliSource, &record));
    const bool isDhcpDone = isDefaultDone(update.name, update.call(dhcpSource, &record));
    return isCliDone && isDhcpDone;
}

bool Network::defaultTimeZone() {
    varoLib_s_sntpTimeZone zone = factoryTimeZone();
    return isDefaultDone("varoUpdateSntpTimeZone", varoUpdateSntpTimeZone(&zone));
}

bool Network::defaultTelnet() {
    varoLib_s_telnetSrv server{};
    if (!isDefaultDone("varoDefTelnetSrv", varoDefTelnetSrv(&server))) {
        return false;
    }
    if (isActive(cordProfile)) {
        networkBleSyslog(LOG_DEBUG,
                         "[networkBLE]: %s: default telnet state set to false for CORD : %d\n",
                         operation, 0);
        server.enabled = 0;
    }
    return isDefaultDone("varoUpdateTelnetSrv", varoUpdateTelnetSrv(&server));
}

bool Network::defaultNtp() {
    rpcSntpConfigHost config{};
    if (!isDefaultDone("varoDefNtpHost", varoDefNtpHost(cliSource, &config))) {
        return false;
    }
    int status = varoUpdateNtpHost(cliSource, &config);
    bool isDone = !reportIf(
        status != 0,
        "[networkBLE]: %s: varoUpdateNtpHost for source CLI has failed! Return value: %d\n",
        operation, status);
    if (!isClearConfigInProgress()) {
        status = varoUpdateNtpHost(dhcpSource, &config);
        // Operators know this message by these words.
        isDone &= !reportIf(
            status != 0,
            "[networkBLE]: %s: varoUpdateNtpHost for surce DHCPhas failed! Return value: %d\n",
            operation, status);
    }
    return isDone;
}

/// Returns the status of the last call.
int Network::defaultAcs(bool& isDone) {
    varoLib_s_acs acs{};
    acs.source = cliSource;
    int status = varoDefAcs(&acs, cliSource);
    if (!isDefaultDone("varoDefAcs", status)) {
        isDone = false;
        return status;
    }
    if (isActive(cordProfile)) {
        networkBleSyslog(LOG_DEBUG,
                         "[networkBLE]: %s: default acs client state set to false for CORD : %d\n",
                         operation, 0);
        acs.enabled = 0;
    }
    for (const int source : {cliSource, dhcpSource}) {
        acs.source = source;
        status = varoUpdateAcs(&acs, source);
        isDone &= isDefaultDone("varoUpdateAcs", status);
    }
    return status;
}

/// A failure is reported by the status of the group before, and does not count.
void Network::defaultWebServer(int statusOfGroupBefore) {
    constexpr bool on = true;
    if (singleton<BLLManager>::instance().isFeatureSupported("httpserver")) {
        reportIf(networkHttpServerSet(on) != 0,
                 "[networkBLE]: %s: networkHttpServerSet %d has failed! Return value: %d\n",
                 operation, on, statusOfGroupBefore);
    }
}
