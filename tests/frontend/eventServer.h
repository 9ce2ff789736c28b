#pragma once

#include "mngctlRun.h"

#include <thread>

namespace mngctl::test {

/// A port of the loopback interface, kept for as long as this lives.
class Port {
public:
    /// Connections are accepted if it listens, else refused.
    explicit Port(bool listens);
    ~Port();
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    int descriptor() const { return socket; }
    std::string number() const { return text; }

private:
    int socket = -1;
    std::string text;
};

/// An event server with a certificate of its own. Each connection gets the same bytes, after its
/// request, and is then closed or, with `stays`, kept open until this ends.
class EventServer {
public:
    explicit EventServer(std::string answer, bool stays = false);
    ~EventServer();
    EventServer(const EventServer&) = delete;
    EventServer& operator=(const EventServer&) = delete;

    std::string port() const { return listener.number(); }
    std::string certificate() const { return directory / "server.crt"; }

    /// The head of an answer that an event stream follows.
    static std::string head();

private:
    TemporaryDirectory directory;
    Port listener{true};
    std::string answer;
    bool stays;
    int ending[2];
    std::thread thread;
};

}  // namespace mngctl::test
