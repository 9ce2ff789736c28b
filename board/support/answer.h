#pragma once

#include "board/support/Failure.h"
#include "board/support/LogChannel.h"

#include <functional>
#include <string_view>

namespace support {

/// What the calls of the board's interfaces return on success; failures are positive.
inline constexpr int success = 0;

/// Logs the exception that is being handled as "call: reason", and returns the code of a Failure;
/// `internalError` for any other exception.
int report(std::string_view call, int internalError, const Log& log) noexcept;

/// Runs a body that no exception may leave; returns the result of the call.
template <class Receiver, class Body>
int answer(std::string_view call, int internalError, Receiver& log, Body body) noexcept {
    try {
        body();
        return success;
    } catch (...) {
        return report(call, internalError, std::ref(log));
    }
}

}  // namespace support
