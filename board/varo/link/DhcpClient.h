#pragma once

#include "board/process/ChildProcess.h"

#include <poll.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varo {

/// Keeps the DHCP client's process as it is wanted: started, started again with a growing pause
/// when it ends by itself, ended. It never waits: its owner waits for the descriptors and the time
/// that it names, and lets it act then. Belongs to one thread, which has to outlive it.
class DhcpClient {
public:
    using Clock = std::chrono::steady_clock;
    /// The client that is to run.
    struct Wish {
        std::uint64_t number = 0;          ///< its owner's, for awaiting it
        std::uint64_t interface = 0;       ///< another coming of the interface needs another client
        std::vector<std::string> command;  ///< empty: none

        bool operator==(const Wish&) const = default;
    };
    /// Receives a report of the client that was started for a wish. Starts are counted, so that a
    /// client can be told from the one before it.
    using Receiver =
        std::function<void(std::uint64_t wish, std::uint64_t start, const std::string& message)>;

    /// The name is that of the client in log lines.
    DhcpClient(std::string clientName, Receiver receive)
        : name(std::move(clientName)), receiver(std::move(receive)) {}

    /// What is to run from now on; what was started for another wish is ended.
    void want(const Wish& wish);

    /// Does what is due: reads, starts, ends.
    void act();

    /// Appends what there is to wait for.
    void addTo(std::vector<pollfd>& descriptors) const;
    /// When there is something to do even if none of them becomes ready.
    std::optional<Clock::time_point> due() const;

    /// True unless a client runs that is not the wanted one.
    bool isSettled() const { return !running || running->wish == wanted; }
    bool isRunning() const { return running.has_value(); }

    /// It works: should it end, the next one is started without a long pause.
    void works() { pause = shortestPause; }

private:
    static constexpr std::chrono::seconds shortestPause{1};
    static constexpr std::chrono::seconds longestPause{60};
    /// From the request to end to the end by force.
    static constexpr std::chrono::seconds patience{2};

    struct Running {
        Running(const Wish& startedFor, std::uint64_t startNumber);

        Wish wish;
        std::uint64_t start;
        process::ChildProcess child;
        // A client that closes its ends goes on, unheard.
        bool hasMessages = true;
        bool hasOutput = true;
        std::string unfinishedLine;
        std::string lastLine;
        bool isAskedToEnd = false;
        std::optional<Clock::time_point> killAt;
    };

    const std::string name;
    const Receiver receiver;
    Wish wanted;
    std::uint64_t starts = 0;
    std::optional<Running> running;
    Clock::time_point startAt = Clock::now();
    std::chrono::seconds pause = shortestPause;

    void readMessages();
    void readOutput();
    void takeEnd();
    void askToEnd();
    void start();
    void postpone(const std::string& why);
};

}  // namespace varo
