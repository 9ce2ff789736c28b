#include "board/varo/settings/groupsServices.h"

#include "board/platform/terminalSessions.h"

namespace varo {

// What is sent in clear text is off until somebody switches it on, and so is the client that would
// let a server change the board's configuration.

const Group<varoLib_s_telnetSrv>& telnetGroup() {
    using Record = varoLib_s_telnetSrv;
    static const auto& group = *new Group<Record>(
        "telnet", Rows::single,
        Record{.enabled = 0, .maxSessions = platform::factoryTerminalSessions, .idleTimeout = 10},
        {
            column("enabled", &Record::enabled),
            column("max_sessions", &Record::maxSessions),
            column("idle_timeout_minutes", &Record::idleTimeout),
        });
    return group;
}

const Group<varoLib_s_sshSrv>& sshGroup() {
    using Record = varoLib_s_sshSrv;
    static const auto& group =
        *new Group<Record>("ssh", Rows::single, Record{.enabled = 1, .port = 22},
                           {
                               column("enabled", &Record::enabled),
                               column("port", &Record::port),
                           });
    return group;
}

const Group<varoLib_s_ftpSrv>& ftpGroup() {
    using Record = varoLib_s_ftpSrv;
    static const auto& group = *new Group<Record>("ftp", Rows::single, Record{.state = 0},
                                                  {
                                                      column("enabled", &Record::state),
                                                  });
    return group;
}

const Group<varoLib_s_acs>& acsGroup() {
    using Record = varoLib_s_acs;
    static const auto& group =
        *new Group<Record>("acs", Rows::bySource, Record{.enabled = 0, .source = 0},
                           {
                               column("enabled", &Record::enabled),
                           });
    return group;
}

}  // namespace varo
