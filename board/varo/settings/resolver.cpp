#include "board/support/replaceFile.h"
#include "board/varo/Library.h"
#include "board/varo/settings/appliers.h"
#include "board/varo/settings/groups.h"
#include "board/varo/settings/resolverFile.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

#include <fmt/format.h>
#include <syslog.h>

#include <system_error>

namespace varo {

namespace {

bool namesAnything(const varoLib_s_dns& dns) {
    return dns.domain[0] != '\0' || dns.ip_pri != 0 || dns.ip_sec != 0;
}

bool namesAnything(const varoLib_s_dns6& dns) {
    return dns.domain[0] != '\0' || dns.ipv6_pri[0] != '\0' || dns.ipv6_sec[0] != '\0';
}

template <class Record>
int update(const char* call, const Group<Record>& group, int source, const Record* record) {
    return answer(call, [&] {
        const Record& given = required(record);
        const int row = storedSource(source);
        const auto change = Library::instance().change();
        change.store().session().write(group, row, given);
        applyResolver(change.store(), change.configuration());
    });
}

template <class Record>
int fillFactory(const char* call, const Group<Record>& group, int source, Record* record) {
    return answer(call, [&] {
        Record& filled = required(record);
        storedSource(source);
        filled = group.factory();
    });
}

}  // namespace

void applyResolver(RecordStore& store, const Configuration& configuration) {
    if (configuration.resolverFile.empty()) {
        return;
    }
    int ignored = libraryChooses;
    ResolverText text;
    {
        auto session = store.session();
        text = resolverText(readInForce(session, dnsGroup(), ignored, namesAnything),
                            readInForce(session, dns6Group(), ignored, namesAnything));
    }
    for (const std::string& value : text.leftOut) {
        Library::instance().log(LOG_ERR, fmt::format("resolver: left out of {}: {}",
                                                     configuration.resolverFile.string(), value));
    }
    try {
        support::replaceFile(configuration.resolverFile, text.content,
                             support::Irreplaceable::writeInPlace);
    } catch (const std::system_error& error) {
        throw Failure(
            applyFailed,
            fmt::format("the resolver settings are stored, but not in force: {}", error.what()));
    }
}

}  // namespace varo

int varoGetDnsWS(int* source, varoLib_s_dns* dns) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        varoLib_s_dns& record = varo::required(dns);
        const auto opened = varo::Library::instance().opened();
        varo::readBySource(opened->store, varo::dnsGroup(), wanted, record, varo::namesAnything);
    });
}

int varoUpdateDnsWS(int source, varoLib_s_dns* dns) {
    return varo::update(__func__, varo::dnsGroup(), source, dns);
}

int varoDefDnsWS(int source, varoLib_s_dns* dns) {
    return varo::fillFactory(__func__, varo::dnsGroup(), source, dns);
}

int varoGetDns6(int* source, varoLib_s_dns6* dns) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        varoLib_s_dns6& record = varo::required(dns);
        const auto opened = varo::Library::instance().opened();
        varo::readBySource(opened->store, varo::dns6Group(), wanted, record, varo::namesAnything);
    });
}

int varoUpdateDns6(int source, varoLib_s_dns6* dns) {
    return varo::update(__func__, varo::dns6Group(), source, dns);
}

int varoDefDns6(int source, varoLib_s_dns6* dns) {
    return varo::fillFactory(__func__, varo::dns6Group(), source, dns);
}
