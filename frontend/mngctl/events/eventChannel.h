#pragma once

#include "mngctl/events/eventParser.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace mngctl {

/// Where the board's event server is, and how it is known.
struct EventServer {
    std::string host;
    std::uint16_t port = 8080;
    std::string certificate;                    ///< PEM file of the server's own certificate
    std::chrono::milliseconds timeout{30'000};  ///< for the connection
};

/// The channel is off, or lost. The text is the first part of a sentence.
struct ChannelFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ChannelObserver {
    std::function<void()> onOpen;
    /// Answers whether to go on.
    std::function<bool(const Event&)> onEvent;
};

/// Follows the events of a server (over TLS) until the observer has enough or Ctrl-C comes, which
/// is no failure. Throws ChannelFailure; UsageError for a certificate file or a host name that is
/// of no use; and NoAnswer if what answers is not the board's event server.
void followEvents(const EventServer& server, const ChannelObserver& observer);

/// Whether somebody accepts connections at a port of the host.
bool answersAt(const std::string& host, std::uint16_t port, std::chrono::milliseconds timeout);

}  // namespace mngctl
