#pragma once

#include "board/process/Supervisor.h"
#include "board/process/waiting.h"
#include "board/support/LogChannel.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace process {

/// Keeps a program of the system running: started, started again with a growing pause when it ends
/// by itself, told to read its configuration again, ended. A thread of its own does it, in the
/// network namespace of who makes it; the program dies with that thread.
///
/// The program stays in the foreground, ends on SIGTERM and writes its messages to standard output
/// or standard error. They are logged: for debugging, and the last one when it has ended.
class Daemon {
public:
    struct Traits {
        std::string name;  ///< in log lines and failures: "the SNMP agent"
        /// Part of the line that the program writes once it serves and understands signals; empty:
        /// it does when it has run for a moment.
        std::string readyMark{};
        /// Part of the line that it writes when it has read its configuration again; empty: it is
        /// not told to, but started anew.
        std::string reloadedMark{};
        /// Linux interface that the program binds itself to: it is started anew when another one
        /// has taken the name. Empty: none.
        std::string interface{};
    };

    Daemon(Traits daemonTraits, support::Log logReceiver);
    /// Ends the program.
    ~Daemon();
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    /// What is to run from now on, with a configuration that has just been written; an empty
    /// command stands for nothing. It is started anew if the command or the restart key is another
    /// one than before, or if it cannot read its configuration again.
    void want(const Command& command, const std::string& restartKey = {});

    /// Waits until the program runs as it was wanted last, or nothing does if nothing is wanted.
    /// Throws std::runtime_error with the reason if it has not come to that: the program has ended
    /// by itself, or the time has passed. It is tried further then.
    void await(std::chrono::milliseconds limit);

    /// Throws std::runtime_error if the program is wanted and does not run.
    void checkRuns();

    /// Ends the program, for good: SIGTERM, and SIGKILL after a second.
    void end();

private:
    static constexpr std::chrono::seconds longestPause{10};
    static constexpr std::chrono::seconds patience{1};
    /// After which a program without a ready mark, or one that does not write it, is taken to
    /// serve.
    static constexpr std::chrono::milliseconds shortStart{300};
    static constexpr std::chrono::milliseconds longStart{5'000};
    static constexpr std::chrono::milliseconds longestReload{5'000};
    static constexpr std::chrono::seconds interfaceCheck{2};

    struct Wish {
        Command command{};
        std::string restartKey{};
        std::uint64_t start = 0;   ///< counts the wishes that need another process
        std::uint64_t reload = 0;  ///< counts the wishes
    };

    /// The process that runs, or has run last.
    struct Current {
        std::uint64_t reload = 0;  ///< wish that its configuration is at least as new as
        unsigned interface = 0;    ///< index; 0: there was none
        Clock::time_point since{};
        bool isReady = false;
        std::optional<std::uint64_t> reloading{};  ///< wish that SIGHUP was sent for
        Clock::time_point reloadingSince{};
    };

    const Traits traits;
    const support::Log log;
    const WakeEvent wake;

    std::mutex mutex;
    std::condition_variable changed;
    Wish wanted;
    bool isEnding = false;
    std::uint64_t inForce = 0;   ///< wish whose configuration the program runs with
    std::uint64_t failures = 0;  ///< ends by itself so far
    std::string failure;         ///< why it does not run; empty: it does, or never was to

    // Of the thread alone.
    Supervisor supervisor;
    Current current;
    std::uint64_t lastWish = 0;

    std::thread thread;

    void work();
    void wait();
    void act(const Wish& wish, bool ending);
    void takeLine(const std::string& line);
    void becomeReady();
    void reloadIfDue(const Wish& wish);
    void putInForce(std::uint64_t wish);
    void fail(const std::string& why);
    Clock::time_point readyAt() const;
};

}  // namespace process
