// The configuration library's calls for the board's servers and for the auto-configuration client,
// and its factory settings of the resolver, as far as the product imports them.

#include "fake/wholeRecord.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

using fake::describe;
using fake::Platform;
using fake::readWhole;
using fake::updateWhole;

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

int varoGetTelnetSrv(varoLib_s_telnetSrv* server) {
    return readWhole("varoGetTelnetSrv", services().telnet, server);
}

int varoUpdateTelnetSrv(varoLib_s_telnetSrv* server) {
    return updateWhole("varoUpdateTelnetSrv", services().telnet, server);
}

int varoDefTelnetSrv(varoLib_s_telnetSrv* server) {
    return readWhole("varoDefTelnetSrv", factory().telnet, server);
}

int varoGetSshSrv(varoLib_s_sshSrv* server) {
    return readWhole("varoGetSshSrv", services().ssh, server);
}

int varoUpdateSshSrv(varoLib_s_sshSrv* server) {
    return updateWhole("varoUpdateSshSrv", services().ssh, server);
}

int varoDefSshSrv(varoLib_s_sshSrv* server) {
    return readWhole("varoDefSshSrv", factory().ssh, server);
}

int varoGetFtpSrv(varoLib_s_ftpSrv* server) {
    return readWhole("varoGetFtpSrv", services().ftp, server);
}

int varoUpdateFtpSrv(varoLib_s_ftpSrv* server) {
    return updateWhole("varoUpdateFtpSrv", services().ftp, server);
}

int varoDefFtpSrv(varoLib_s_ftpSrv* server) {
    return readWhole("varoDefFtpSrv", factory().ftp, server);
}

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
                                    [&] {
                                        services().acs[source] = *acs;
                                        return std::string();
                                    });
}
