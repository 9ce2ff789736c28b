#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace mngctl {

/// Tcp is the default: a call is carried out at most once, and a text of any length fits.
enum class Protocol { Tcp, Udp };

/// What the options that every command takes say.
struct Settings {
    std::string host = "127.0.0.1";  ///< a name or a dotted address; the board serves IPv4 only
    Protocol protocol = Protocol::Tcp;
    std::chrono::milliseconds timeout{30'000};  ///< for each answer that is waited for
    std::uint16_t port = 0;                     ///< of the network program; 0 asks the port mapper
    std::uint16_t controlPort = 0;              ///< of the control program; 0 asks the port mapper
    bool json = false;
    bool quiet = false;  ///< changes print nothing
    bool yes = false;    ///< nobody is asked for consent; only commands that would ask take it
};

}  // namespace mngctl
