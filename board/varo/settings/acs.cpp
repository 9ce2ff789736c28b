#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

namespace varo {

/// Off until somebody switches it on: the client lets a server change the board's configuration.
const SettingBySource<varoLib_s_acs>& acsSetting() {
    using Record = varoLib_s_acs;
    static const auto& setting = *new SettingBySource<Record>({
        .group = {"acs",
                  Rows::bySource,
                  {.enabled = 0, .source = 0},
                  {
                      column("enabled", &Record::enabled),
                  }},
        .namesAnything = [](const Record& acs) { return acs.enabled != 0; },
        .complete = [](Record& acs, int source) { acs.source = source; },
        .apply = toHost("auto-configuration", &Appliers::acs),
    });
    return setting;
}

}  // namespace varo

int varoUpdateAcs(varoLib_s_acs* acs, int source) {
    return varo::answer(__func__, [&] {
        const varoLib_s_acs& given = varo::required(acs);
        const int row = varo::storedSource(source);
        if (given.source != source) {
            throw varo::Failure(
                varo::invalidValue,
                fmt::format("source: {} in the record, {} in the call", given.source, source));
        }
        varo::checkSwitch("enabled", given.enabled);
        varo::acsSetting().store(varo::Library::instance().change(), row, given);
    });
}

int varoDefAcs(varoLib_s_acs* acs, int source) {
    return varo::acsSetting().fillFactory(__func__, source, acs);
}
