#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

namespace varo {

/// Off until somebody switches it on: it is sent in clear text.
const Setting<varoLib_s_ftpSrv>& ftpSetting() {
    using Record = varoLib_s_ftpSrv;
    static const auto& setting = *new Setting<Record>({
        .group = {"ftp",
                  Rows::single,
                  {.state = 0},
                  {
                      column("enabled", &Record::state),
                  }},
        .check = [](const Record& server) { checkSwitch("state", server.state); },
        .apply = toHost("FTP", &Appliers::ftp),
    });
    return setting;
}

}  // namespace varo

int varoGetFtpSrv(varoLib_s_ftpSrv* server) { return varo::ftpSetting().read(__func__, server); }

int varoUpdateFtpSrv(varoLib_s_ftpSrv* server) {
    return varo::ftpSetting().update(__func__, server);
}

int varoDefFtpSrv(varoLib_s_ftpSrv* server) {
    return varo::ftpSetting().fillFactory(__func__, server);
}
