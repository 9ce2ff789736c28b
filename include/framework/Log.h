#pragma once

#include "framework/singleton.h"

#include <sstream>
#include <string>

#pragma GCC visibility push(default)

namespace LogImpl {

/// Levels of the framework log, most severe first.
enum logLevel_t : int { levelError = 0, levelWarning = 1, levelInfo = 2, levelDebug = 3 };

}  // namespace LogImpl

/// The framework's own log. A message is written in parts and ends with a line end; the level set
/// last by a thread holds for what that thread writes.
class Log : public singleton<Log> {
public:
    /// Sets the level of the message about to be written.
    Log& setMsgLevel(LogImpl::logLevel_t level);

    /// Appends text to the message.
    Log& operator<<(const std::string& text);

    /// Appends a value in its usual text form. Nothing is formatted while no sink listens.
    template <class T>
    Log& write(T value) {
        if (hasSink()) {
            std::ostringstream text;
            text << value;
            writeImpl(text.str());
        }
        return *this;
    }

private:
    friend class singleton<Log>;
    Log();
    ~Log();

    bool hasSink() const;
    void writeImpl(const std::string& text);
};

extern template class singleton<Log>;

#pragma GCC visibility pop
