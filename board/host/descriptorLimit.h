#pragma once

namespace host {

/// Sets the soft limit on descriptors to 1024, or to the hard limit where that is lower: the RPC
/// library serves its transports with select(2), which does not see descriptors above. Throws
/// StartFailure.
void limitDescriptors();

}  // namespace host
