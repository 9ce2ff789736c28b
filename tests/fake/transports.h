#pragma once

#include <rpc/rpc.h>

namespace fake {

/// The transport that was made of a descriptor. It receives whatever is asked of it, and decodes
/// from zeros.
SVCXPRT* transportOf(int descriptor);

}  // namespace fake
