// Return to factory settings: for each group of settings the library fills a record with the
// factory values and writes it as the configuration. A failure in one group never stops the next
// one.

#include "framework/BLLManager.h"
#include "framework/CliConfig.h"
#include "network/Network.h"
#include "network/cordProfile.h"
#include "network/varoSources.h"
#include "varo/varoLib.h"

#include <cstring>

namespace {

constexpr const char* operation = "applyDefaultSettings";

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

/// A call that fills or writes a record, and its name in messages. Where settings have sources it
/// is told one.
template <class Record, class... Source>
struct Call {
    const char* name;
    int (*call)(Source... source, Record* record);
};

}  // namespace

/// Writes group after group; any failure shows in `isDone`.
class Network::FactorySettings {
public:
    explicit FactorySettings(Network& entity) : network(entity) {}

    void write() {
        timeZone();
        telnet();
        group<varoLib_s_sshSrv>({"varoDefSshSrv", varoDefSshSrv},
                                {"varoUpdateSshSrv", varoUpdateSshSrv});
        group<varoLib_s_ftpSrv>({"varoDefFtpSrv", varoDefFtpSrv},
                                {"varoUpdateFtpSrv", varoUpdateFtpSrv});
        group<varoLib_s_subag>({"varoDefSubag", varoDefSubag},
                               {"varoUpdateSubag", varoUpdateSubag});
        group<varoLib_s_snmpCommunity>({"varoDefSnmpCommunity", varoDefSnmpCommunity},
                                       {"varoUpdateSnmpCommunity", varoUpdateSnmpCommunity});
        group<varoLib_s_snmpSystem>({"varoDefSnmpSystem", varoDefSnmpSystem},
                                    {"varoUpdateSnmpSystem", varoUpdateSnmpSystem});
        ntp();
        if (isClearConfigInProgress()) {
            network.networkRAClear();
            return;
        }
        resolver<varoLib_s_dns>({"varoDefDnsWS", varoDefDnsWS},
                                {"varoUpdateDnsWS", varoUpdateDnsWS});
        resolver<varoLib_s_dns6>({"varoDefDns6", varoDefDns6}, {"varoUpdateDns6", varoUpdateDns6});
        webServer(acs());
    }

    bool isDone = true;

private:
    Network& network;

    /// Reports a call that failed. Whether it succeeded.
    bool check(const char* call, int status) {
        const bool hasFailed =
            network.reportIf(status != 0, "[networkBLE]: %s: %s has failed! Return value: %d\n",
                             operation, call, status);
        isDone &= !hasFailed;
        return !hasFailed;
    }

    template <class Record>
    void group(const Call<Record>& fill, const Call<Record>& update) {
        Record record{};
        if (check(fill.name, fill.call(&record))) {
            check(update.name, update.call(&record));
        }
    }

    /// Both sources get the factory values; the second is written even if the first cannot be.
    template <class Record>
    void resolver(const Call<Record, int>& fill, const Call<Record, int>& update) {
        Record record{};
        if (check(fill.name, fill.call(cliSource, &record))) {
            check(update.name, update.call(cliSource, &record));
            check(update.name, update.call(dhcpSource, &record));
        }
    }

    void timeZone() {
        varoLib_s_sntpTimeZone zone = factoryTimeZone();
        check("varoUpdateSntpTimeZone", varoUpdateSntpTimeZone(&zone));
    }

    void telnet() {
        varoLib_s_telnetSrv server{};
        if (!check("varoDefTelnetSrv", varoDefTelnetSrv(&server))) {
            return;
        }
        if (isCordProfile()) {
            network.trace("[networkBLE]: %s: default telnet state set to false for CORD : %d\n",
                          operation, 0);
            server.enabled = 0;
        }
        check("varoUpdateTelnetSrv", varoUpdateTelnetSrv(&server));
    }

    void ntp() {
        rpcSntpConfigHost config{};
        if (!check("varoDefNtpHost", varoDefNtpHost(cliSource, &config))) {
            return;
        }
        int status = varoUpdateNtpHost(cliSource, &config);
        isDone &= !network.reportIf(
            status != 0,
            "[networkBLE]: %s: varoUpdateNtpHost for source CLI has failed! Return value: %d\n",
            operation, status);
        if (!isClearConfigInProgress()) {
            status = varoUpdateNtpHost(dhcpSource, &config);
            // Spelling and blank are those of the message.
            isDone &= !network.reportIf(
                status != 0,
                "[networkBLE]: %s: varoUpdateNtpHost for surce DHCPhas failed! Return value: %d\n",
                operation, status);
        }
    }

    /// Returns the status of the last call.
    int acs() {
        varoLib_s_acs acs{};
        acs.source = cliSource;
        int status = varoDefAcs(&acs, cliSource);
        if (!check("varoDefAcs", status)) {
            return status;
        }
        if (isCordProfile()) {
            network.trace("[networkBLE]: %s: default acs client state set to false for CORD : %d\n",
                          operation, 0);
            acs.enabled = 0;
        }
        for (const int source : {cliSource, dhcpSource}) {
            acs.source = source;
            status = varoUpdateAcs(&acs, source);
            check("varoUpdateAcs", status);
        }
        return status;
    }

    /// A failure is reported by the status of the group before, and does not count.
    void webServer(int statusOfGroupBefore) {
        constexpr bool on = true;
        if (singleton<BLLManager>::instance().isFeatureSupported("httpserver")) {
            network.reportIf(
                network.networkHttpServerSet(on) != 0,
                "[networkBLE]: %s: networkHttpServerSet %d has failed! Return value: %d\n",
                operation, on, statusOfGroupBefore);
        }
    }
};

int Network::applyDefaultSettings() {
    trace("[networkBLE]: %s: Inside function\n", operation);
    FactorySettings settings(*this);
    settings.write();
    initVersComp();
    return settings.isDone ? 1 : 0;
}
