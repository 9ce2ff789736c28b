#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace framework {

/// Runs a function on a thread of its own, named `threadName` (15 bytes count), and waits for its
/// end up to `limit`. Returns its result, rethrows what it threw, and throws std::system_error when
/// there is no thread to be had.
///
/// Returns nothing when the limit has passed. The thread then goes on by itself; what the function
/// refers to must outlive it.
std::optional<int> callWithin(std::chrono::milliseconds limit, const std::string& threadName,
                              std::function<int()> function);

}  // namespace framework
