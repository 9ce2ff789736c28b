#include "board/varo/settings/allSettings.h"
#include "varo/varoLib.h"

namespace varo {

const Setting<varoLib_s_internalConfig>& internalConfigSetting() {
    using Record = varoLib_s_internalConfig;
    static const auto& setting = *new Setting<Record>({
        .group = {"internal_config",
                  Rows::single,
                  {.severity = 3},
                  {
                      column("severity", &Record::severity),
                  }},
        // The library's own log threshold.
        .apply =
            [](const auto&, const auto& stored) {
                Library::instance().log.setThreshold(stored().severity);
            },
    });
    return setting;
}

}  // namespace varo

int varoGetInternalConfig(varoLib_s_internalConfig* config) {
    return varo::internalConfigSetting().read(__func__, config);
}

/// Should the two severities differ, the second argument wins, as it is what takes effect at once:
/// it is stored, so that the next start finds what is in force now. Values outside 0 to 7 are
/// stored as they are; a negative one silences the log.
int varoUpdateInternalConfig(varoLib_s_internalConfig* config, std::int16_t severity) {
    return varo::answer(__func__, [&] {
        auto record = varo::required(config);
        record.severity = severity;
        varo::internalConfigSetting().store(varo::Library::instance().change(), record);
    });
}
