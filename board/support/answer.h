#pragma once

#include "board/support/LogChannel.h"

#include <syslog.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace support {

/// Why a call of the board's interfaces fails: the code that it returns, one of those of the part
/// of the board that it belongs to, and the text that it logs.
class Failure : public std::runtime_error {
public:
    Failure(int code, const std::string& text, int level = LOG_ERR)
        : std::runtime_error(text), failureCode(code), logLevel(level) {}

    int code() const { return failureCode; }
    /// Level of the log line, on the scale of syslog(3).
    int level() const { return logLevel; }

private:
    int failureCode;
    int logLevel;
};

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
