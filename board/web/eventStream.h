#pragma once

#include "board/web/EventLog.h"

#include <string>

namespace web {

/// What a browser asks the event server for.
struct Request {
    std::string method;
    std::string path;               ///< without the query
    std::uint64_t lastEventId = 0;  ///< of an earlier connection; 0 asks for everything
};

/// Reads the head of an HTTP request (RFC 9112), up to its empty line.
Request parseRequest(const std::string& head);

/// An event in the form of server-sent events (HTML Living Standard, section 9.2). Line ends within
/// the text split it, and other control characters become blanks: none can end the event early.
std::string toEventStream(const Event& event);

}  // namespace web
