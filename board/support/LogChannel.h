#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace support {

/// Receives log lines: the level, on the scale of syslog(3) where nothing else is said, and the
/// text without a line end. It is called from any thread, also from several at the same time.
using Log = std::function<void(int level, const std::string& text)>;

/// Lines go to syslog(3), each behind the prefix.
Log systemLog(std::string prefix = "");

/// Writes to standard error in one piece, as far as it takes it.
void writeToStandardError(std::string_view text);

/// Where the lines of one part of the board go: to one receiver, which gets those up to a level.
/// Lower numbers are more severe; a negative one counts as 0.
class LogChannel {
public:
    explicit LogChannel(Log receiver, int leastSevere);
    LogChannel(const LogChannel&) = delete;
    LogChannel& operator=(const LogChannel&) = delete;

    /// Replaces the receiver; a line being written goes to either. An empty one: nobody listens.
    void setReceiver(Log receiver);
    void setThreshold(int leastSevere) { threshold = leastSevere; }

    bool listensTo(int level) const;

    /// A line that cannot be written must not keep a call from being answered: it is lost.
    void operator()(int level, const std::string& text) const noexcept;

private:
    std::atomic<int> threshold;
    std::atomic<bool> hasReceiver;
    mutable std::mutex mutex;
    std::shared_ptr<const Log> receiver;
};

}  // namespace support
