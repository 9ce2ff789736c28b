#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

namespace varo {

namespace {

void check(const varoLib_s_sshSrv& server) {
    checkSwitch("enabled", server.enabled);
    checkPort(server.port);
}

}  // namespace

const Setting<varoLib_s_sshSrv>& sshSetting() {
    using Record = varoLib_s_sshSrv;
    static const auto& setting = *new Setting<Record>({
        .group = {"ssh",
                  Rows::single,
                  {.enabled = 1, .port = 22},
                  {
                      column("enabled", &Record::enabled),
                      column("port", &Record::port),
                  }},
        .check = check,
        .apply = toHost("SSH", &Appliers::ssh),
    });
    return setting;
}

}  // namespace varo

int varoGetSshSrv(varoLib_s_sshSrv* server) { return varo::sshSetting().read(__func__, server); }

int varoUpdateSshSrv(varoLib_s_sshSrv* server) {
    return varo::sshSetting().update(__func__, server);
}

int varoDefSshSrv(varoLib_s_sshSrv* server) {
    return varo::sshSetting().fillFactory(__func__, server);
}
