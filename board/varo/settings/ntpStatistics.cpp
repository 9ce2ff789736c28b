#include "board/varo/settings/groupsTime.h"
#include "board/varo/settings/ntp.h"
#include "board/varo/settings/ntpRecords.h"
#include "board/varo/settings/singleRecord.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

#include <exception>

namespace varo {

namespace {

rpcSntpInfoHost fromClient(const Configuration& configuration, const rpcSntpConfigHost& config) {
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
    int inForce = libraryChooses;
    rpcSntpConfigHost config{};
    rpcSntpConfigHost wanted{};
    {
        auto session = opened->store.session();
        config = ntpInForce(session, inForce);
        if (source != libraryChooses && source != inForce) {
            wanted = session.read(ntpGroup(), source);
        }
    }
    if (source != libraryChooses && source != inForce) {
        return clientOff(wanted);
    }
    const rpcSntpInfoHost info = fromClient(opened->configuration, config);
    source = inForce;
    return info;
}

}  // namespace

}  // namespace varo

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
