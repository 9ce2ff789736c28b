#pragma once

namespace varo {

/// Configuration sources, as they are passed in calls and stored as keys.
enum Source : int {
    libraryChooses = 0,  ///< in reads only
    fromDhcp = 1,        ///< what the DHCP client was told
    fromCli = 2,         ///< what the management front ends have set
};

/// The source when it is one that records are stored for. Throws Failure (noSuchSource).
int storedSource(int source);

}  // namespace varo
