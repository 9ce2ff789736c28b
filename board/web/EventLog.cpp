#include "board/web/EventLog.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace web {

namespace {

constexpr const char* namelessEvent = "message";

/// Where the text begins behind a name; 0 when there is none.
std::size_t textStart(const std::string& message) {
    const auto end = std::find_if(message.begin(), message.end(), [](unsigned char character) {
        return std::isalnum(character) == 0;
    });
    const bool isNamed = end != message.begin() && end != message.end() && *end == '=';
    return isNamed ? static_cast<std::size_t>(end - message.begin()) + 1 : 0;
}

}  // namespace

void EventLog::add(const std::string& message) {
    const std::size_t start = textStart(message);
    std::string name = start == 0 ? namelessEvent : message.substr(0, start - 1);
    {
        const std::lock_guard guard(mutex);
        events.push_back({++lastId, std::move(name), message.substr(start)});
        if (events.size() > kept) {
            events.pop_front();
        }
    }
    added.notify_all();
}

std::vector<Event> EventLog::after(std::uint64_t id, std::chrono::milliseconds limit) {
    std::unique_lock guard(mutex);
    if (id > lastId) {
        id = 0;
    }
    added.wait_for(guard, limit, [&] { return lastId > id; });
    std::vector<Event> news;
    std::copy_if(events.begin(), events.end(), std::back_inserter(news),
                 [id](const Event& event) { return event.id > id; });
    return news;
}

}  // namespace web
