#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mngctl {

/// A message that the event server sent.
struct Event {
    std::string id;                ///< as the server numbers them; empty if it does not
    std::string name = "message";  ///< of the channel, such as "events"
    std::string text;              ///< any bytes
};

/// Reads an event stream (HTML Living Standard, section 9.2.6), in pieces of any size.
class EventParser {
public:
    /// Takes the next bytes of the stream; answers the events that they complete.
    std::vector<Event> take(std::string_view bytes);

private:
    void takeLine(std::string_view line);
    void endEvent();

    std::string rest;  ///< a line that is not complete
    bool isAfterReturn = false;
    std::string lastId;
    std::string name;
    std::string text;
    std::vector<Event> complete;
};

/// What the board's messages tell.
struct Notification {
    std::optional<std::string> time;          ///< local time of the board, "2024-03-01T10:20:30Z"
    std::optional<std::string> restartCause;  ///< as it was recorded; only in a restart's message
    bool isCutOff = false;                    ///< the message ended before the cause did
};

/// Looks for what a message tells. The board puts the restart's cause between quotes as it was
/// recorded, so that such a message need not be JSON.
Notification readNotification(const std::string& text);

}  // namespace mngctl
