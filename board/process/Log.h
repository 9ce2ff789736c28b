#pragma once

#include <functional>
#include <string>

namespace process {

/// Receives log lines: the level of syslog(3) and the text. Called from any thread.
using Log = std::function<void(int level, const std::string& text)>;

}  // namespace process
