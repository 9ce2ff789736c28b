#include "framework/Log.h"

#include "board/framework/Framework.h"

#include <exception>
#include <string_view>

namespace {

using LogImpl::logLevel_t;

thread_local logLevel_t threadLevel = LogImpl::levelInfo;

/// What a thread has written of a message that has not ended.
class Message {
public:
    Message() = default;
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
    ~Message() {
        try {
            end();
        } catch (const std::exception&) {
            // There is no one left to tell.
        }
    }

    void append(std::string_view part) {
        for (auto lineEnd = part.find('\n'); lineEnd != part.npos; lineEnd = part.find('\n')) {
            text += part.substr(0, lineEnd);
            write();
            part.remove_prefix(lineEnd + 1);
        }
        text += part;
    }

    void end() {
        if (!text.empty()) {
            write();
        }
    }

private:
    void write() {
        const std::string whole = std::move(text);
        text.clear();
        framework::framework().log(threadLevel, whole);
    }

    std::string text;
};

/// Set when the thread's message is gone, for what a thread still writes while it ends. It has no
/// destructor itself and stays readable to the last.
thread_local bool threadIsEnding = false;

struct ThreadMessage : Message {
    ~ThreadMessage() { threadIsEnding = true; }
};

thread_local ThreadMessage threadMessage;

}  // namespace

template class singleton<Log>;

Log::Log() = default;
Log::~Log() = default;

Log& Log::setMsgLevel(logLevel_t level) {
    framework::endLogMessage();
    threadLevel = level;
    return *this;
}

Log& Log::operator<<(const std::string& text) {
    if (hasSink()) {
        writeImpl(text);
    }
    return *this;
}

bool Log::hasSink() const { return framework::framework().log.listensTo(threadLevel); }

void Log::writeImpl(const std::string& text) {
    if (threadIsEnding) {
        Message().append(text);
    } else {
        threadMessage.append(text);
    }
}

void framework::endLogMessage() {
    if (!threadIsEnding) {
        threadMessage.end();
    }
}
