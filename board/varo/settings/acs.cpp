#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsServices.h"
#include "board/varo/settings/singleRecord.h"
#include "board/varo/settings/sources.h"
#include "varo/varoLib.h"

namespace varo {

namespace {

bool namesAnything(const varoLib_s_acs& acs) { return acs.enabled != 0; }

}  // namespace

void applyAcs(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.acs, "auto-configuration", [&] {
        auto session = store.session();
        int source = libraryChooses;
        varoLib_s_acs inForce = readInForce(session, acsGroup(), source, namesAnything);
        inForce.source = source;
        return inForce;
    });
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
        const auto change = varo::Library::instance().change();
        change.store().session().write(varo::acsGroup(), row, given);
        varo::applyAcs(change.store(), change.configuration());
    });
}

int varoDefAcs(varoLib_s_acs* acs, int source) {
    return varo::answer(__func__, [&] {
        varoLib_s_acs& filled = varo::required(acs);
        const int row = varo::storedSource(source);
        filled = varo::acsGroup().factory();
        filled.source = row;
    });
}
