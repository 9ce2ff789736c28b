#include "board/varo/settings/appliers.h"

#include "board/varo/Library.h"
#include "board/varo/settings/applyServices.h"

#include <exception>

namespace varo {

namespace {

/// Applies one group. A failure is thrown when all are done; each but the last is logged here.
template <class Apply>
void attempt(std::exception_ptr& failure, Apply apply) {
    try {
        apply();
    } catch (...) {
        if (failure) {
            guarded("varoLib", [&] { std::rethrow_exception(failure); });
        }
        failure = std::current_exception();
    }
}

}  // namespace

void applyAll(RecordStore& store, const Configuration& configuration, Keepers& keepers) {
    std::exception_ptr failure;
    attempt(failure, [&] { applyInternalConfig(store); });
    attempt(failure, [&] { applyResolver(store, configuration); });
    attempt(failure, [&] { applyIpv4(store, configuration, keepers); });
    attempt(failure, [&] { applyIpv6(store, configuration, keepers); });
    for (const auto apply :
         {applyTelnet, applySsh, applyFtp, applyTrapManagers, applySnmpCommunities, applySnmpSystem,
          applyTimeZone, applyNtp, applyAcs}) {
        attempt(failure, [&] { apply(store, configuration); });
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace varo
