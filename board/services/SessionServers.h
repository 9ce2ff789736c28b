#pragma once

#include "board/process/LinkMonitor.h"
#include "board/process/SessionProcess.h"
#include "board/process/waiting.h"
#include "board/services/Listener.h"
#include "board/support/LogChannel.h"
#include "varo/records.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace services {

/// What the host says of the servers. Each is a command that serves one connection, which is its
/// standard input and output, as inetd(8) runs servers.
struct ServerConfiguration {
    std::string interface;  ///< the only one through which connections are taken
    process::Command telnet{};
    process::Command ssh{};
    process::Command ftp{};
    std::uint16_t telnetPort = 23;
    std::uint16_t ftpPort = 21;
    /// Length of a minute of the idle timeout.
    std::chrono::milliseconds minute{60'000};
    /// Receives log lines with their level of syslog(3), from the servers' thread.
    support::Log log{};
};

/// Telnet, SSH and FTP on the management interface: takes connections as the settings want it, and
/// runs a server for each.
///
/// Telnet and SSH sessions count together against the limit on terminal sessions, from the
/// connection on: one above it is told so and closed. A telnet session that has sent nothing for
/// the idle timeout is closed. Sessions that are there when a service is switched off, or the limit
/// is lowered, stay until they end. All sessions end with the object.
class SessionServers {
public:
    /// File transfers at a time, which are no terminal sessions.
    static constexpr unsigned int mostTransfers = 8;

    /// Everything is off. Throws when the thread cannot be made.
    explicit SessionServers(ServerConfiguration configuration);
    ~SessionServers();
    SessionServers(const SessionServers&) = delete;
    SessionServers& operator=(const SessionServers&) = delete;

    // Put settings into force: when they return, the port takes connections or refuses them. They
    // throw std::runtime_error, whose text says why a service does not run; a port that was open
    // before stays so. A service that lacks its interface starts when there is one.
    void applyTelnet(const varoLib_s_telnetSrv& server);
    void applySsh(const varoLib_s_sshSrv& server);
    void applyFtp(const varoLib_s_ftpSrv& server);

private:
    using Clock = process::Clock;

    enum Kind { telnet, ssh, ftp, kinds };

    struct Service {
        const char* name;
        const process::Command* command;
        std::optional<std::uint16_t> wantedPort{};  ///< none: it is off
        std::optional<Listener> listener{};
    };

    struct Session {
        Kind kind;
        support::Descriptor connection;
        std::string peer;
        process::SessionProcess process;
        std::optional<Clock::time_point> killAt{};  ///< set once it was closed for being idle
    };

    const ServerConfiguration configuration;
    const process::LinkMonitor links;
    const process::WakeEvent wake;

    std::mutex mutex;  ///< protects what follows
    std::array<Service, kinds> services;
    unsigned int sessionLimit = 1;
    std::chrono::milliseconds idleLimit{0};  ///< 0: none
    bool isEnding = false;

    // The thread's own.
    std::vector<Session> sessions;
    bool isRefusing = false;                         ///< the limit was reached, and was logged
    std::optional<Clock::time_point> acceptAgainAt;  ///< after a lack of descriptors or memory

    std::thread thread;

    void apply(Kind kind, std::optional<std::uint16_t> port);
    void open(Service& service);

    void run();
    bool look();
    std::vector<pollfd> awaited();
    std::optional<Clock::time_point> due();
    void follow();
    void acceptAll();
    void admit(Kind kind, Listener::Connection connection);
    void refuse(Kind kind, const Listener::Connection& connection, unsigned int limit);
    unsigned int running(Kind kind) const;
    void takeEnds();
    void closeIdle();
    std::optional<Clock::duration> untilIdle(const Session& session) const;
    void log(int level, const std::string& text) const;
};

}  // namespace services
