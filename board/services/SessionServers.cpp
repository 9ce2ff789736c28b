#include "board/services/SessionServers.h"

#include <fmt/format.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/socket.h>
#include <syslog.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace services {

namespace {

/// From the closing of an idle session to the end of its server by force.
constexpr std::chrono::seconds patience{5};
constexpr std::chrono::seconds pauseWithoutMeans{1};

/// Time since the client has sent something, by the kernel's own clock: setting the machine's makes
/// nobody idle.
std::chrono::milliseconds silence(const support::Descriptor& connection) {
    tcp_info info{};
    socklen_t size = sizeof info;
    ::getsockopt(connection.get(), IPPROTO_TCP, TCP_INFO, &info, &size);
    return std::chrono::milliseconds(info.tcpi_last_data_recv);
}

}  // namespace

SessionServers::SessionServers(ServerConfiguration given)
    : configuration(std::move(given)),
      services{Service{"telnet", &configuration.telnet}, Service{"SSH", &configuration.ssh},
               Service{"FTP", &configuration.ftp}},
      thread([this] { run(); }) {}

SessionServers::~SessionServers() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    wake.raise();
    thread.join();
}

void SessionServers::applyTelnet(const varoLib_s_telnetSrv& server) {
    {
        const std::lock_guard lock(mutex);
        sessionLimit = server.maxSessions;
        idleLimit = server.idleTimeout * configuration.minute;
    }
    apply(telnet, server.enabled != 0 ? std::optional(configuration.telnetPort) : std::nullopt);
}

void SessionServers::applySsh(const varoLib_s_sshSrv& server) {
    apply(ssh, server.enabled != 0 ? std::optional(static_cast<std::uint16_t>(server.port))
                                   : std::nullopt);
}

void SessionServers::applyFtp(const varoLib_s_ftpSrv& server) {
    apply(ftp, server.state != 0 ? std::optional(configuration.ftpPort) : std::nullopt);
}

void SessionServers::apply(Kind kind, std::optional<std::uint16_t> port) {
    const std::lock_guard lock(mutex);
    Service& service = services[kind];
    service.wantedPort = service.command->empty() ? std::nullopt : port;
    // Also where nothing is opened or closed, as limits have changed.
    wake.raise();
    if (!service.wantedPort) {
        service.listener.reset();
        return;
    }
    open(service);
}

/// With the mutex held. Throws.
void SessionServers::open(Service& service) {
    process::checkProgram(*service.command);
    const bool isOpen =
        service.listener && service.listener->port() == *service.wantedPort &&
        service.listener->interfaceIndex() == ::if_nametoindex(configuration.interface.c_str());
    if (isOpen) {
        return;
    }
    Listener listener(configuration.interface, *service.wantedPort);
    service.listener.reset();
    service.listener.emplace(std::move(listener));
}

void SessionServers::log(int level, const std::string& text) const {
    if (configuration.log) {
        configuration.log(level, text);
    }
}

// The thread.

void SessionServers::run() {
    while (look()) {
    }
    // Here, not by whoever destroys the object: the thread's end would kill them, and nobody would
    // take their ends.
    sessions.clear();
}

/// Waits for something to do and does it; false when it was the last time.
bool SessionServers::look() {
    std::vector<pollfd> descriptors = awaited();
    process::awaitReady(descriptors, due());

    const std::lock_guard lock(mutex);
    wake.clear();
    if (isEnding) {
        return false;
    }
    if (descriptors.at(1).revents != 0) {
        links.drain();
        follow();
    }
    takeEnds();
    closeIdle();
    acceptAll();
    return true;
}

std::vector<pollfd> SessionServers::awaited() {
    const std::lock_guard lock(mutex);
    std::vector<pollfd> result{{wake.descriptor(), POLLIN, 0}, {links.descriptor(), POLLIN, 0}};
    for (const Session& session : sessions) {
        result.push_back({session.process.handle().get(), POLLIN, 0});
    }
    if (acceptAgainAt) {
        return result;
    }
    for (const Service& service : services) {
        if (!service.listener) {
            continue;
        }
        for (const support::Descriptor& socket : service.listener->sockets()) {
            result.push_back({socket.get(), POLLIN, 0});
        }
    }
    return result;
}

/// When there is something to do even if no descriptor becomes ready.
std::optional<SessionServers::Clock::time_point> SessionServers::due() {
    const std::lock_guard lock(mutex);
    process::Due due{acceptAgainAt};
    for (const Session& session : sessions) {
        if (session.killAt) {
            due.by(session.killAt);
        } else if (const auto wait = untilIdle(session)) {
            due.by(Clock::now() + *wait);
        }
    }
    return due.time;
}

/// Takes up what the interface's coming or going has changed.
void SessionServers::follow() {
    const unsigned int index = ::if_nametoindex(configuration.interface.c_str());
    for (Service& service : services) {
        if (!service.wantedPort || index == 0) {
            continue;
        }
        if (service.listener && service.listener->interfaceIndex() == index) {
            continue;
        }
        try {
            open(service);
            log(LOG_NOTICE,
                fmt::format("{} is served on {} now", service.name, configuration.interface));
        } catch (const std::exception& error) {
            log(LOG_ERR, fmt::format("{} is not served: {}", service.name, error.what()));
        }
    }
}

void SessionServers::acceptAll() {
    if (acceptAgainAt && Clock::now() < *acceptAgainAt) {
        return;
    }
    acceptAgainAt.reset();
    for (const Kind kind : {telnet, ssh, ftp}) {
        if (!services[kind].listener) {
            continue;
        }
        try {
            for (;;) {
                Listener::Connection connection = services[kind].listener->accept();
                if (!connection.socket) {
                    break;
                }
                admit(kind, std::move(connection));
            }
        } catch (const std::exception& error) {
            log(LOG_ERR, fmt::format("{}: {}", services[kind].name, error.what()));
            acceptAgainAt = Clock::now() + pauseWithoutMeans;
            return;
        }
    }
}

unsigned int SessionServers::running(Kind kind) const {
    return static_cast<unsigned int>(std::ranges::count(sessions, kind, &Session::kind));
}

void SessionServers::admit(Kind kind, Listener::Connection connection) {
    const bool isTerminal = kind != ftp;
    const unsigned int limit = isTerminal ? sessionLimit : mostTransfers;
    const unsigned int others = isTerminal ? running(telnet) + running(ssh) : running(ftp);
    if (others >= limit) {
        refuse(kind, connection, limit);
        return;
    }
    process::SessionProcess process(*services[kind].command, connection.socket);
    log(LOG_INFO, fmt::format("{} session from {}, {} of {}", services[kind].name, connection.peer,
                              others + 1, limit));
    sessions.push_back(
        {kind, std::move(connection.socket), std::move(connection.peer), std::move(process)});
}

void SessionServers::refuse(Kind kind, const Listener::Connection& connection, unsigned int limit) {
    // RFC 4253 lets a server send lines before its identification; 421 is FTP's (RFC 959).
    const std::string line =
        fmt::format("{}All {} sessions are in use.\r\n", kind == ftp ? "421 " : "", limit);
    ::send(connection.socket.get(), line.data(), line.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    // One line until a session ends, not one for each knock.
    if (!std::exchange(isRefusing, true)) {
        log(LOG_WARNING, fmt::format("{} from {} is refused: all {} sessions are in use",
                                     services[kind].name, connection.peer, limit));
    }
}

void SessionServers::takeEnds() {
    std::erase_if(sessions, [this](Session& session) {
        if (!session.process.hasEnded()) {
            return false;
        }
        log(LOG_INFO,
            fmt::format("{} session from {} has ended with {}", services[session.kind].name,
                        session.peer, session.process.awaitEnd()));
        isRefusing = false;
        return true;
    });
}

/// None when the session may stay silent.
std::optional<SessionServers::Clock::duration> SessionServers::untilIdle(
    const Session& session) const {
    if (session.kind != telnet || idleLimit.count() == 0) {
        return std::nullopt;
    }
    return idleLimit - silence(session.connection);
}

void SessionServers::closeIdle() {
    const auto now = Clock::now();
    for (Session& session : sessions) {
        if (session.killAt) {
            if (now >= *session.killAt) {
                session.process.signal(SIGKILL);
                session.killAt = now + patience;
            }
            continue;
        }
        const auto wait = untilIdle(session);
        if (!wait || *wait > Clock::duration::zero()) {
            continue;
        }
        log(LOG_NOTICE, fmt::format("{} session from {} was idle and is closed",
                                    services[session.kind].name, session.peer));
        // The server sees its client leave and puts everything in order.
        ::shutdown(session.connection.get(), SHUT_RDWR);
        session.killAt = now + patience;
    }
}

}  // namespace services
