#pragma once

#include "board/varo/store/RecordStore.h"
#include "board/varo/varoCodes.h"
#include "board/varo/varoConfiguration.h"

#include <fmt/format.h>

#include <exception>
#include <functional>

namespace varo {

// What hands stored values to the host's appliers. The caller holds a Library::Change, or is
// opening the store. All throw Failure; the stored values stay.

using StoredApplier = void(RecordStore& store, const Configuration& configuration);

StoredApplier applyTelnet, applySsh, applyFtp;
StoredApplier applyTrapManagers, applySnmpCommunities, applySnmpSystem;
StoredApplier applyTimeZone, applyNtp;
StoredApplier applyAcs;

/// Calls the applier, if there is one, with what `read` returns. `what` names the settings in the
/// log line of a failure. Throws Failure.
template <class Record, class Read>
void apply(const std::function<void(const Record&)>& applier, const char* what, Read read) {
    if (!applier) {
        return;
    }
    const Record record = read();
    try {
        applier(record);
    } catch (const std::exception& error) {
        throw Failure(applyFailed, fmt::format("the {} settings are stored, but not in force: {}",
                                               what, error.what()));
    }
}

}  // namespace varo
