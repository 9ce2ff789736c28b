#pragma once

#include <syslog.h>

#include <stdexcept>
#include <string>

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

}  // namespace support
