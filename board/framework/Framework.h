#pragma once

#include "board/framework/EntityRegistry.h"
#include "board/framework/ReentrantSharedLock.h"
#include "board/framework/Settings.h"
#include "board/framework/ThreadNames.h"
#include "board/support/LogChannel.h"
#include "framework/Log.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace framework {

/// A rule of the remote-access list and what it has matched. Addresses are in host byte order.
struct RuleCounter {
    unsigned int address;
    unsigned int netmask;
    bool permit;
    unsigned long long packets;
    unsigned long long bytes;
};

/// The state behind the framework's classes, one for the process.
struct Framework {
    Framework();

    /// To standard error, debug messages left out, until told otherwise. Levels are those of
    /// LogImpl.
    support::LogChannel log;
    ThreadNames threads;
    EntityRegistry entities;
    ReentrantSharedLock configurationLock;  ///< waits 10 s until told otherwise
    Settings settings;
    std::atomic<bool> clearConfigInProgress{false};
    /// Tells the rules of the remote-access list in the order in which they are asked; throws
    /// std::exception when it cannot. Empty until the bridge supplies it, before requests are
    /// served.
    std::function<std::vector<RuleCounter>()> ruleCounters;
};

/// Never destroyed: threads of entities may outlive the rest of the process.
Framework& framework();

/// Writes a line of the framework's own to its log; `message` has no line end.
void logLine(LogImpl::logLevel_t level, const std::string& message);

/// The same for what has levels of syslog(3).
void writeLog(int level, const std::string& message);

/// Ends the message that the calling thread is writing to the framework log, if any. It ends by
/// itself at a line end, when the thread sets a level, and when the thread ends.
void endLogMessage();

}  // namespace framework
