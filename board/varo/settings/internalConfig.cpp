#include "board/varo/Library.h"
#include "board/varo/settings/appliers.h"
#include "board/varo/settings/groups.h"
#include "varo/varoLib.h"

namespace varo {

void applyInternalConfig(RecordStore& store) {
    Library::instance().log.setThreshold(store.session().read(internalConfigGroup()).severity);
}

}  // namespace varo

int varoGetInternalConfig(varoLib_s_internalConfig* config) {
    return varo::answer(__func__, [&] {
        auto& record = varo::required(config);
        const auto opened = varo::Library::instance().opened();
        record = opened->store.session().read(varo::internalConfigGroup());
    });
}

/// Should the two severities differ, the second argument wins, as it is what takes effect at once:
/// it is stored, so that the next start finds what is in force now. Values outside 0 to 7 are
/// stored as they are; a negative one silences the log.
int varoUpdateInternalConfig(varoLib_s_internalConfig* config, std::int16_t severity) {
    return varo::answer(__func__, [&] {
        auto record = varo::required(config);
        record.severity = severity;
        const auto change = varo::Library::instance().change();
        change.store().session().write(varo::internalConfigGroup(), varo::singleRow, record);
        varo::applyInternalConfig(change.store());
    });
}
