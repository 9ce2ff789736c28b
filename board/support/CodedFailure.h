#pragma once

#include <syslog.h>

#include <stdexcept>
#include <string>

namespace support {

/// Why a call of the board's interfaces fails: the code that it returns and the text that it logs.
template <class Code>
class CodedFailure : public std::runtime_error {
public:
    CodedFailure(Code code, const std::string& text, int level = LOG_ERR)
        : std::runtime_error(text), failureCode(code), logLevel(level) {}

    Code code() const { return failureCode; }
    /// Level of the log line, on the scale of syslog(3).
    int level() const { return logLevel; }

private:
    Code failureCode;
    int logLevel;
};

}  // namespace support
