#pragma once

namespace host {

/// How bllhost ends.
enum ExitStatus : int {
    orderlyEnd = 0,
    couldNotStart = 1,
    wrongUsage = 2,
    /// A second signal ends the process at once, with this and the signal's number added.
    endedBySignal = 128
};

}  // namespace host
