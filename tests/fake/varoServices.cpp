// The configuration library's calls for the board's servers and for the auto-configuration client,
// and its factory settings of the resolver, as far as the product imports them.

#include "fake/wholeRecord.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

using fake::describe;
using fake::Platform;

namespace {

fake::Services& services() { return Platform::current().services; }
const fake::FactorySettings& factory() { return Platform::current().factory; }

/// The factory settings of a group that is kept by source.
template <class Record>
int fill(const char* function, int source, const Record& settings, Record* record) {
    return Platform::current().call(function, std::to_string(source), [&] {
        *record = settings;
        return describe(*record);
    });
}

}  // namespace

WHOLE_RECORD(TelnetSrv, varoLib_s_telnetSrv, services().telnet, factory().telnet)
WHOLE_RECORD(SshSrv, varoLib_s_sshSrv, services().ssh, factory().ssh)
WHOLE_RECORD(FtpSrv, varoLib_s_ftpSrv, services().ftp, factory().ftp)

int varoDefDnsWS(int source, varoLib_s_dns* dns) {
    return fill("varoDefDnsWS", source, factory().dns, dns);
}

int varoDefDns6(int source, varoLib_s_dns6* dns) {
    return fill("varoDefDns6", source, factory().dns6, dns);
}

/// The record says its source itself, before and after.
int varoDefAcs(varoLib_s_acs* acs, int source) {
    return Platform::current().call("varoDefAcs", fmt::format("{}, {}", describe(*acs), source),
                                    [&] {
                                        *acs = factory().acs;
                                        return describe(*acs);
                                    });
}

int varoUpdateAcs(varoLib_s_acs* acs, int source) {
    return Platform::current().call("varoUpdateAcs", fmt::format("{}, {}", describe(*acs), source),
                                    [&] { services().acs[source] = *acs; });
}
