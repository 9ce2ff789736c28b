#pragma once

#include "framework/Log.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace framework {

/// Where the framework log goes: one sink, and the least severe level that it listens to.
class LogOutput {
public:
    /// Takes a whole message without its line end. Called from any thread, also from several at the
    /// same time.
    using Sink = std::function<void(LogImpl::logLevel_t level, const std::string& message)>;

    /// Starts without a sink.
    LogOutput() = default;
    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

    /// Replaces the sink; a message being written goes to either. An empty one: nobody listens.
    void setSink(Sink newSink, LogImpl::logLevel_t leastSevere);

    bool listensTo(LogImpl::logLevel_t level) const;

    void write(LogImpl::logLevel_t level, const std::string& message) const;

private:
    static constexpr int nobodyListens = -1;

    std::atomic<int> threshold{nobodyListens};
    mutable std::mutex mutex;
    std::shared_ptr<const Sink> sink;
};

/// Ends the message that the calling thread is writing to the framework log, if any. It ends by
/// itself at a line end, when the thread sets a level, and when the thread ends.
void endLogMessage();

}  // namespace framework
