// Telnet, SSH and FTP server, and the limit on terminal sessions. varoLib keeps a record for each
// server and runs it.

#include "framework/CliConfig.h"
#include "network/Network.h"
#include "varo/varoLib.h"

// Telnet and SSH are switched by a record that starts from the factory values, not from those in
// force: with the switch the session limit and the other settings return to them too.

int Network::telnetEnable(bool on) {
    return withExclusiveLock([&] {
        varoLib_s_telnetSrv server{};
        varoDefTelnetSrv(&server);
        server.enabled = on ? 1 : 0;
        return resultOf(varoUpdateTelnetSrv(&server),
                        "[networkBLE]: telnetEnable: varoUpdateTelnetSrv has failed!\n");
    });
}

int Network::sshEnable(bool on) {
    return withExclusiveLock([&] {
        varoLib_s_sshSrv server{};
        varoDefSshSrv(&server);
        server.enabled = on ? 1 : 0;
        return resultOf(varoUpdateSshSrv(&server),
                        "[networkBLE]: sshEnable: varoUpdateSshSrv has failed!\n");
    });
}

int Network::getTelnetConfig(bool* on) {
    return withSharedLock([&] {
        varoLib_s_telnetSrv server{};
        if (reportIf(varoGetTelnetSrv(&server) != 0,
                     "[networkBLE]: getTelnetConfig: varoGetTelnetSrv has failed!\n")) {
            return -1;
        }
        *on = server.enabled != 0;
        return 0;
    });
}

int Network::getSshConfig(bool* on) {
    return withSharedLock([&] {
        varoLib_s_sshSrv server{};
        if (reportIf(varoGetSshSrv(&server) != 0,
                     "[networkBLE]: getSshConfig: varoGetSshSrv has failed!\n")) {
            return -1;
        }
        *on = server.enabled != 0;
        return 0;
    });
}

int Network::ptySetMaxSess(unsigned int maxSessions) {
    return withExclusiveLock([&] {
        varoLib_s_telnetSrv server{};
        if (reportIf(varoGetTelnetSrv(&server) != 0,
                     "[networkBLE]: ptySetMaxSess: varoGetTelnetSrv has failed!\n")) {
            return -1;
        }
        server.maxSessions = maxSessions != 0 ? maxSessions : CliConfig::settings_t().maxSessions;
        const int status = varoUpdateTelnetSrv(&server);
        return resultOf(
            status,
            "[networkBLE]: ptySetMaxSess: varoUpdateTelnetSrv has failed! Return value: %d\n",
            status);
    });
}

int Network::ptyGetMaxSess(unsigned int* maxSessions, unsigned int* value) {
    return withSharedLock([&] {
        varoLib_s_telnetSrv server{};
        if (reportIf(varoGetTelnetSrv(&server) != 0,
                     "[networkBLE]: ptyGetMaxSess: varoGetTelnetSrv has failed!\n")) {
            return -1;
        }
        *maxSessions = server.maxSessions;
        *value = server.idleTimeout;
        return 0;
    });
}

// FTP hands on varoLib's own results.

int Network::enableFtp(bool on) {
    return withExclusiveLock([&] {
        varoLib_s_ftpSrv server{};
        server.state = on ? 1 : 0;
        return varoUpdateFtpSrv(&server);
    });
}

/// 0 is on and 1 is off, the other way round than enableFtp.
int Network::getFtpState() {
    return withSharedLock([&] {
        varoLib_s_ftpSrv server{};
        const int status = varoGetFtpSrv(&server);
        if (status != 0) {
            return status;
        }
        return server.state == 0 ? 1 : 0;
    });
}
