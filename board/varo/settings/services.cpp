#include "board/platform/terminalSessions.h"
#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsServices.h"
#include "board/varo/settings/singleRecord.h"
#include "varo/varoLib.h"

namespace varo {

namespace {

constexpr std::int64_t longestIdleMinutes = 1440;

void checkTelnet(const varoLib_s_telnetSrv& server) {
    checkSwitch("enabled", server.enabled);
    checkRange("maximum sessions", server.maxSessions, 1, platform::mostTerminalSessions);
    checkRange("idle timeout", server.idleTimeout, 0, longestIdleMinutes);
}

void checkSsh(const varoLib_s_sshSrv& server) {
    checkSwitch("enabled", server.enabled);
    checkPort(server.port);
}

void checkFtp(const varoLib_s_ftpSrv& server) { checkSwitch("state", server.state); }

}  // namespace

void applyTelnet(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.telnet, "telnet",
          [&] { return store.session().read(telnetGroup()); });
}

void applySsh(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.ssh, "SSH", [&] { return store.session().read(sshGroup()); });
}

void applyFtp(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.ftp, "FTP", [&] { return store.session().read(ftpGroup()); });
}

}  // namespace varo

int varoGetTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::readSingle(__func__, varo::telnetGroup(), server);
}

int varoUpdateTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::updateSingle(__func__, varo::telnetGroup(), server, varo::checkTelnet,
                              varo::applyTelnet);
}

int varoDefTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::fillFactory(__func__, varo::telnetGroup(), server);
}

int varoGetSshSrv(varoLib_s_sshSrv* server) {
    return varo::readSingle(__func__, varo::sshGroup(), server);
}

int varoUpdateSshSrv(varoLib_s_sshSrv* server) {
    return varo::updateSingle(__func__, varo::sshGroup(), server, varo::checkSsh, varo::applySsh);
}

int varoDefSshSrv(varoLib_s_sshSrv* server) {
    return varo::fillFactory(__func__, varo::sshGroup(), server);
}

int varoGetFtpSrv(varoLib_s_ftpSrv* server) {
    return varo::readSingle(__func__, varo::ftpGroup(), server);
}

int varoUpdateFtpSrv(varoLib_s_ftpSrv* server) {
    return varo::updateSingle(__func__, varo::ftpGroup(), server, varo::checkFtp, varo::applyFtp);
}

int varoDefFtpSrv(varoLib_s_ftpSrv* server) {
    return varo::fillFactory(__func__, varo::ftpGroup(), server);
}
