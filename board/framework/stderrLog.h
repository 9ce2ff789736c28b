#pragma once

#include "framework/Log.h"

#include <chrono>
#include <string>

namespace framework {

/// One line of the log: time in UTC (ISO 8601, milliseconds), level, the thread's name in brackets
/// if it has one, and the message. Ends with a line end.
std::string formatLogLine(std::chrono::system_clock::time_point time, LogImpl::logLevel_t level,
                          const std::string& threadName, const std::string& message);

/// Writes a line to standard error, each in one piece. Levels are those of LogImpl.
void writeToStandardError(int level, const std::string& message);

}  // namespace framework
