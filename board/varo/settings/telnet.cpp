#include "board/platform/terminalSessions.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

namespace varo {

namespace {

constexpr std::int64_t longestIdleMinutes = 1440;

void check(const varoLib_s_telnetSrv& server) {
    checkSwitch("enabled", server.enabled);
    checkRange("maximum sessions", server.maxSessions, 1, platform::mostTerminalSessions);
    checkRange("idle timeout", server.idleTimeout, 0, longestIdleMinutes);
}

}  // namespace

/// Off until somebody switches it on: it is sent in clear text.
const Setting<varoLib_s_telnetSrv>& telnetSetting() {
    using Record = varoLib_s_telnetSrv;
    static const auto& setting = *new Setting<Record>({
        .group = {"telnet",
                  Rows::single,
                  {.enabled = 0,
                   .maxSessions = platform::factoryTerminalSessions,
                   .idleTimeout = 10},
                  {
                      column("enabled", &Record::enabled),
                      column("max_sessions", &Record::maxSessions),
                      column("idle_timeout_minutes", &Record::idleTimeout),
                  }},
        .check = check,
        .apply = toHost("telnet", &Appliers::telnet),
    });
    return setting;
}

}  // namespace varo

int varoGetTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::telnetSetting().read(__func__, server);
}

int varoUpdateTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::telnetSetting().update(__func__, server);
}

int varoDefTelnetSrv(varoLib_s_telnetSrv* server) {
    return varo::telnetSetting().fillFactory(__func__, server);
}
