#pragma once

#include "board/process/ChildProcess.h"
#include "board/process/Log.h"

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

    Daemon(Traits daemonTraits, Log logReceiver);
    /// Ends the program.
    ~Daemon();
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    /// What is to run from now on, with a configuration that has just been written; an empty
    /// command stands for nothing. It is started anew if the command or the restart key is another
    /// one than before, or if it cannot read its configuration again.
    void want(const std::vector<std::string>& command, const std::string& restartKey = {});

    /// Waits until the program runs as it was wanted last, or nothing does if nothing is wanted.
    /// Throws std::runtime_error with the reason if it has not come to that: the program has ended
    /// by itself, or the time has passed. It is tried further then.
    void await(std::chrono::milliseconds limit);

    /// Throws std::runtime_error if the program is wanted and does not run.
    void checkRuns();

    /// Ends the program, for good: SIGTERM, and SIGKILL after a second.
    void end();

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds shortestPause{1};
    static constexpr std::chrono::seconds longestPause{10};
    static constexpr std::chrono::seconds patience{1};
    /// After which a program without a ready mark, or one that does not write it, is taken to
    /// serve.
    static constexpr std::chrono::milliseconds shortStart{300};
    static constexpr std::chrono::milliseconds longStart{5'000};
    static constexpr std::chrono::milliseconds longestReload{5'000};
    static constexpr std::chrono::seconds interfaceCheck{2};

    struct Wish {
        std::vector<std::string> command{};
        std::string restartKey{};
        std::uint64_t start = 0;   ///< counts the wishes that need another process
        std::uint64_t reload = 0;  ///< counts the wishes
    };

    struct Running {
        Running(const Wish& wish, unsigned boundInterface);

        ChildProcess process;
        std::uint64_t start;
        std::uint64_t reload;  ///< wish that its configuration is at least as new as
        unsigned interface;    ///< index; 0: there was none
        Clock::time_point since = Clock::now();
        bool isReady = false;
        bool hasOutput = true;
        std::optional<std::uint64_t> reloading{};  ///< wish that SIGHUP was sent for
        Clock::time_point reloadingSince{};
        std::optional<Clock::time_point> killAt{};
        bool isKilled = false;
        std::string unfinishedLine{};
        std::string lastLine{};
    };

    const Traits traits;
    const Log log;
    support::Descriptor wake;  ///< eventfd(2)

    std::mutex mutex;
    std::condition_variable changed;
    Wish wanted;
    bool isEnding = false;
    std::uint64_t inForce = 0;   ///< wish whose configuration the program runs with
    std::uint64_t failures = 0;  ///< ends by itself so far
    std::string failure;         ///< why it does not run; empty: it does, or never was to

    // Of the thread alone.
    std::optional<Running> running;
    Clock::time_point startAt = Clock::now();
    std::chrono::seconds pause = shortestPause;
    std::uint64_t failedWish = 0;  ///< a later one is tried without a pause

    std::thread thread;

    void work();
    void wakeUp() const;
    void wait(const Wish& wish, bool ending);
    void act(const Wish& wish, bool ending);
    void readOutput();
    void takeLine();
    void takeEnd(const Wish& wish, bool ending);
    void askToEnd();
    void reloadIfDue(const Wish& wish);
    void becomeReady();
    void start(const Wish& wish);
    void postpone(const Wish& wish, const std::string& why);
    void putInForce(std::uint64_t wish);
    unsigned interfaceIndex() const;
    bool isReplaced() const;
};

}  // namespace process
