#pragma once

#include "mngctl/commandTree.h"

#include <memory>

namespace mngctl {

/// Where the web server set is reached.
struct WebPorts {
    std::uint16_t page = 80;
    std::uint16_t events = 8080;
};

/// Adds the options that name the ports to a command.
std::shared_ptr<WebPorts> addPortOptions(Command& command);
void addEventPortOption(Command& command, std::uint16_t& port);

/// Whether the board remembers to have switched the web server set on.
bool readWebServer(Session& session);

/// What is to be told where events cannot be followed: what the board says about it.
std::string explainNoChannel(Session& session);

/// What the board remembers, and what is found at the ports.
Json readWebState(Session& session, const WebPorts& ports);
std::string webStateLines(const Json& state);

}  // namespace mngctl
