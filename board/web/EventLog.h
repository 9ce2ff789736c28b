#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace web {

/// A message as it goes to browsers, with its number in the server's life, from 1 on.
struct Event {
    std::uint64_t id;
    std::string name;
    std::string text;
};

/// The latest events, for those that are connected and for those that connect later. One thread
/// adds, any number follow.
class EventLog {
public:
    /// Takes a message of the channel: "NAME=TEXT", or a text without a name.
    void add(const std::string& message);

    /// Waits, up to the limit, for events after the given number; empty when there came none. What
    /// is no longer kept is left out. A number that was never given out is one of an earlier life
    /// of the server: all is news then.
    std::vector<Event> after(std::uint64_t id, std::chrono::milliseconds limit);

private:
    static constexpr std::size_t kept = 100;

    std::mutex mutex;
    std::condition_variable added;
    std::deque<Event> events;
    std::uint64_t lastId = 0;
};

}  // namespace web
