#pragma once

#include <functional>
#include <string>
#include <vector>

/// An exported function, the lock that its operation takes ("exclusiveLock", "sharedLock", or empty
/// for none), and calls of it.
struct ExportedFunction {
    std::string name;
    std::string lock;
    /// With null pointers wherever the function takes pointers and does not itself look behind
    /// them.
    std::function<int()> callWithNulls;
    /// With buffers that are large enough, and harmless values.
    std::function<int()> callWithBuffers;
};

/// All of them, in the order in which the library defines them.
const std::vector<ExportedFunction>& exportedFunctions();
