#include "board/varo/settings/ntp.h"

#include "board/varo/settings/groupsTime.h"
#include "board/varo/settings/ntpRecords.h"
#include "board/varo/settings/singleRecord.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

#include <algorithm>
#include <iterator>

namespace varo {

namespace {

bool namesServer(const rpcSntpConfigHost& config) {
    return std::any_of(std::begin(config.servers), std::end(config.servers),
                       [](const rpcSntpSrvHost& server) { return server.host[0] != '\0'; });
}

void store(int source, const rpcSntpConfigHost& config) {
    const int row = storedSource(source);
    const rpcSntpConfigHost checked = checkedNtp(config);
    const auto change = Library::instance().change();
    change.store().session().write(ntpGroup(), row, checked);
    applyNtp(change.store(), change.configuration());
}

rpcSntpConfigHost read(int& source) {
    rpcSntpConfigHost config{};
    const auto opened = Library::instance().opened();
    readBySource(opened->store, ntpGroup(), source, config, namesServer);
    return config;
}

}  // namespace

rpcSntpConfigHost ntpInForce(RecordStore::Session& session, int& source) {
    return readInForce(session, ntpGroup(), source, namesServer);
}

void applyNtp(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.ntp, "SNTP", [&] {
        auto session = store.session();
        int ignored = libraryChooses;
        return ntpInForce(session, ignored);
    });
}

}  // namespace varo

int varoGetNtpWS(int* source, rpcSntpConfig* config) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        rpcSntpConfig& record = varo::required(config);
        record = varo::ipv4View(varo::read(wanted));
    });
}

/// A record is whole: servers that the source had by name are gone.
int varoUpdateNtpWS(int source, rpcSntpConfig* config) {
    return varo::answer(__func__,
                        [&] { varo::store(source, varo::fromIpv4View(varo::required(config))); });
}

int varoGetNtpHost(int* source, rpcSntpConfigHost* config) {
    return varo::answer(__func__, [&] {
        int& wanted = varo::required(source);
        rpcSntpConfigHost& record = varo::required(config);
        record = varo::read(wanted);
    });
}

int varoUpdateNtpHost(int source, rpcSntpConfigHost* config) {
    return varo::answer(__func__, [&] { varo::store(source, varo::required(config)); });
}

int varoDefNtpHost(int source, rpcSntpConfigHost* config) {
    return varo::answer(__func__, [&] {
        rpcSntpConfigHost& filled = varo::required(config);
        varo::storedSource(source);
        filled = varo::ntpGroup().factory();
    });
}
