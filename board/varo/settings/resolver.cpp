#include "board/support/wholeFile.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/resolverFile.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

#include <system_error>

namespace varo {

namespace {

/// Writes what is in force, of both families, to the configured file.
template <class Stored>
void writeFile(const Library::Change& change, const Stored&) {
    const auto& file = change.configuration().resolverFile;
    if (file.empty()) {
        return;
    }
    ResolverText text;
    {
        auto session = change.store().session();
        text = resolverText(dnsSetting().inForce(session).record,
                            dns6Setting().inForce(session).record);
    }
    for (const std::string& value : text.leftOut) {
        Library::instance().log(LOG_ERR,
                                fmt::format("resolver: left out of {}: {}", file.string(), value));
    }
    try {
        support::replaceFile(file, text.content, support::Irreplaceable::writeInPlace);
    } catch (const std::system_error& error) {
        throw Failure(
            applyFailed,
            fmt::format("the resolver settings are stored, but not in force: {}", error.what()));
    }
}

}  // namespace

const SettingBySource<varoLib_s_dns>& dnsSetting() {
    using Record = varoLib_s_dns;
    static const auto& setting = *new SettingBySource<Record>({
        .group = {"dns",
                  Rows::bySource,
                  {},
                  {
                      column("domain", &Record::domain),
                      ipv4Column("primary_server", &Record::ip_pri),
                      ipv4Column("secondary_server", &Record::ip_sec),
                  }},
        .namesAnything =
            [](const Record& dns) {
                return dns.domain[0] != '\0' || dns.ip_pri != 0 || dns.ip_sec != 0;
            },
        .apply = writeFile<std::function<Record()>>,
        // The file is written once.
        .withNext = true,
    });
    return setting;
}

const SettingBySource<varoLib_s_dns6>& dns6Setting() {
    using Record = varoLib_s_dns6;
    static const auto& setting = *new SettingBySource<Record>({
        .group = {"dns6",
                  Rows::bySource,
                  {},
                  {
                      column("domain", &Record::domain),
                      column("primary_server", &Record::ipv6_pri),
                      column("secondary_server", &Record::ipv6_sec),
                  }},
        .namesAnything =
            [](const Record& dns) {
                return dns.domain[0] != '\0' || dns.ipv6_pri[0] != '\0' || dns.ipv6_sec[0] != '\0';
            },
        .apply = writeFile<std::function<Record()>>,
    });
    return setting;
}

}  // namespace varo

int varoGetDnsWS(int* source, varoLib_s_dns* dns) {
    return varo::dnsSetting().read(__func__, source, dns);
}

int varoUpdateDnsWS(int source, varoLib_s_dns* dns) {
    return varo::dnsSetting().update(__func__, source, dns);
}

int varoDefDnsWS(int source, varoLib_s_dns* dns) {
    return varo::dnsSetting().fillFactory(__func__, source, dns);
}

int varoGetDns6(int* source, varoLib_s_dns6* dns) {
    return varo::dns6Setting().read(__func__, source, dns);
}

int varoUpdateDns6(int source, varoLib_s_dns6* dns) {
    return varo::dns6Setting().update(__func__, source, dns);
}

int varoDefDns6(int source, varoLib_s_dns6* dns) {
    return varo::dns6Setting().fillFactory(__func__, source, dns);
}
