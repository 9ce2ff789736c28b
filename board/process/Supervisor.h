#pragma once

#include "board/process/ChildProcess.h"
#include "board/process/waiting.h"
#include "board/support/LogChannel.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace process {

/// Keeps a program's process as it is wanted: started, started again with a growing pause when it
/// ends by itself, ended. It never waits: its owner waits for the descriptors and the time that it
/// names, and lets it act then. Belongs to one thread, which has to outlive it.
class Supervisor {
public:
    struct Traits {
        std::string name;  ///< in log lines and failures: "the SNMP agent"
        /// Before a program that ends by itself is started again; the first pause is a second, the
        /// next ones twice the one before.
        std::chrono::seconds longestPause;
        std::chrono::seconds patience;  ///< from the request to end (SIGTERM) to the end by force
        int failureLevel;               ///< of the log line that says why it is started again
        /// Empty lines count as well, and the last one is told of a program, too, that a signal has
        /// ended.
        bool tellsAll = false;
        std::string socketVariable{};  ///< see ChildProcess
    };
    /// Who is told what the program does, on the owner's thread.
    struct Receivers {
        support::Log log;
        std::function<void(const std::string& line)> line;          ///< of its output, maybe cut
        std::function<void(const std::string& message)> message{};  ///< from its socket
        std::function<void(const std::string& why)> failure{};      ///< it has ended by itself
    };
    /// What is to run.
    struct Wish {
        std::uint64_t number = 0;     ///< its owner's; another one needs another process
        std::uint64_t interface = 0;  ///< another coming of the interface needs another one, too
        Command command{};            ///< empty: nothing

        bool operator==(const Wish&) const = default;
    };

    Supervisor(Traits traitsOfProgram, Receivers whoIsTold);

    /// What is to run from now on; what was started for another wish is ended. True if it is
    /// another one.
    bool want(const Wish& wish);
    /// Forgets the pause before the next start; later ones grow on.
    void startNow() { startAt = Clock::now(); }
    /// It works: should it end, the next one is started without a long pause.
    void works() { pause = shortestPause; }
    /// Ends the process that runs, although it is wanted: another one is started.
    void askToEnd();
    void signal(int number) const { running->process.signal(number); }

    /// Does what is due: reads, starts, ends.
    void act();

    /// Appends what there is to wait for.
    void addTo(std::vector<pollfd>& descriptors) const;
    /// When there is something to do even if none of them becomes ready.
    std::optional<Clock::time_point> due() const;

    bool isRunning() const { return running.has_value(); }
    /// True while a process runs that was asked to end.
    bool isEnding() const { return running && running->isAskedToEnd; }
    /// True unless a process runs that is not the wanted one.
    bool isSettled() const { return !running || running->wish == wanted; }
    /// The wish that the process was started for; for the receivers.
    const Wish& runningFor() const { return running->wish; }
    /// Number of starts so far: tells a process from the one before it.
    std::uint64_t starts() const { return startCount; }

private:
    static constexpr std::chrono::seconds shortestPause{1};

    struct Running {
        Wish wish;
        ChildProcess process;
        // A program that closes its ends goes on, unheard.
        bool hasMessages;
        bool hasOutput = true;
        std::string unfinishedLine{};
        std::string lastLine{};
        bool isAskedToEnd = false;
        std::optional<Clock::time_point> killAt{};
    };

    const Traits traits;
    const Receivers told;
    Wish wanted;
    std::uint64_t startCount = 0;
    std::optional<Running> running;
    Clock::time_point startAt = Clock::now();
    std::chrono::seconds pause = shortestPause;

    void readMessages();
    void readOutput();
    void takeLine();
    void takeEnd();
    void start();
    void postpone(const std::string& why);
};

}  // namespace process
