#include "board/framework/Framework.h"
#include "board/framework/stderrLog.h"
#include "doubles.h"
#include "framework/Log.h"
#include "support/matchers.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <barrier>
#include <chrono>
#include <ostream>
#include <thread>

using namespace LogImpl;
using test::CapturedLog;

namespace {

Log& log() { return singleton<Log>::instance(); }

/// Counts how often it is formatted.
struct Formatted {
    int* count;
};

std::ostream& operator<<(std::ostream& stream, Formatted value) {
    ++*value.count;
    return stream << "formatted";
}

}  // namespace

TEST(Log, PutsThePartsOfAMessageTogether) {
    const CapturedLog captured;
    log().setMsgLevel(levelError) << "network";
    log().write<const char*>(": ").write<int>(4053).write<std::string>(": failed");
    EXPECT_THAT(captured.entries(), IsEmpty());
    log() << "\n";
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelError, "network: 4053: failed")));
}

TEST(Log, EndsAMessageAtEveryLineEnd) {
    const CapturedLog captured;
    log().setMsgLevel(levelInfo) << "one\n\ntwo\nthr";
    log() << "ee\n";
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelInfo, "one"), Pair(levelInfo, ""),
                                                Pair(levelInfo, "two"), Pair(levelInfo, "three")));
}

TEST(Log, EndsAnUnfinishedMessageWhenTheNextOneBegins) {
    const CapturedLog captured;
    log().setMsgLevel(levelError) << "unfinished";
    log().setMsgLevel(levelDebug) << "next\n";
    EXPECT_THAT(captured.entries(),
                ElementsAre(Pair(levelError, "unfinished"), Pair(levelDebug, "next")));
}

TEST(Log, KeepsTheLevelUntilItIsSetAgain) {
    const CapturedLog captured;
    log().setMsgLevel(levelWarning) << "one\n";
    log() << "two\n";
    EXPECT_THAT(captured.entries(),
                ElementsAre(Pair(levelWarning, "one"), Pair(levelWarning, "two")));
}

TEST(Log, ThreadsHaveALevelAndAMessageEach) {
    const CapturedLog captured;
    std::barrier step(2);
    const auto write = [&](logLevel_t level, const std::string& name) {
        log().setMsgLevel(level);
        step.arrive_and_wait();
        log() << name;
        step.arrive_and_wait();
        log() << " goes on";
        step.arrive_and_wait();
        log() << "\n";
    };
    {
        const std::jthread first([&] { write(levelError, "first"); });
        const std::jthread second([&] { write(levelDebug, "second"); });
    }
    EXPECT_THAT(captured.entries(), UnorderedElementsAre(Pair(levelError, "first goes on"),
                                                         Pair(levelDebug, "second goes on")));
}

TEST(Log, StartsAThreadAtLevelInfo) {
    const CapturedLog captured;
    std::jthread([] { log() << "hello\n"; }).join();
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelInfo, "hello")));
}

TEST(Log, AThreadThatEndsInTheMiddleOfAMessageLosesNothing) {
    const CapturedLog captured;
    std::jthread([] { log().setMsgLevel(levelWarning) << "half a"; }).join();
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelWarning, "half a")));
}

TEST(Log, WhatAThreadWritesWhileItEndsIsNotLost) {
    const CapturedLog captured;
    struct Late {
        ~Late() { log() << "late"; }
    };
    std::jthread([] {
        // Made before the thread's message, hence destroyed after it.
        thread_local const Late late;
        [[maybe_unused]] const Late* const used = &late;
        log() << "early";
    }).join();
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelInfo, "early"), Pair(levelInfo, "late")));
}

TEST(Log, IsEndedByTheHostBeforeItLeaves) {
    const CapturedLog captured;
    log().setMsgLevel(levelInfo) << "half a";
    framework::endLogMessage();
    framework::endLogMessage();
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelInfo, "half a")));
}

TEST(Log, FormatsNothingWithoutASink) {
    int count = 0;
    {
        const CapturedLog captured;
        framework::framework().log.setReceiver(nullptr);
        log().setMsgLevel(levelError).write(Formatted{&count}) << "\n";
        EXPECT_EQ(count, 0);
        EXPECT_THAT(captured.entries(), IsEmpty());
    }
    const CapturedLog captured;
    log().setMsgLevel(levelError).write(Formatted{&count}) << "\n";
    EXPECT_EQ(count, 1);
    EXPECT_THAT(captured.entries(), ElementsAre(Pair(levelError, "formatted")));
}

TEST(Log, LeavesOutWhatIsLessSevereThanTheSinkWants) {
    int count = 0;
    const CapturedLog captured(levelWarning);
    log().setMsgLevel(levelInfo).write(Formatted{&count}) << "info\n";
    log().setMsgLevel(levelWarning) << "warning\n";
    log().setMsgLevel(logLevel_t(-1)) << "beyond error\n";
    EXPECT_EQ(count, 0);
    EXPECT_THAT(captured.entries(),
                ElementsAre(Pair(levelWarning, "warning"), Pair(logLevel_t(-1), "beyond error")));
}

TEST(StandardErrorLog, LineHasTimeLevelThreadAndMessage) {
    using namespace std::chrono;
    const system_clock::time_point time = sys_days{2024y / February / 29} + 23h + 59min + 58s + 7ms;
    EXPECT_EQ(framework::formatLogLine(time, levelWarning, "Network_mng", "text"),
              "2024-02-29T23:59:58.007Z warning [Network_mng]: text\n");
    EXPECT_EQ(framework::formatLogLine(time, levelError, "", ""),
              "2024-02-29T23:59:58.007Z error: \n");
    EXPECT_EQ(framework::formatLogLine(time, levelInfo, "", "x"),
              "2024-02-29T23:59:58.007Z info: x\n");
    EXPECT_EQ(framework::formatLogLine(time, levelDebug, "", "x"),
              "2024-02-29T23:59:58.007Z debug: x\n");
    EXPECT_EQ(framework::formatLogLine(time, logLevel_t(9), "", "x"),
              "2024-02-29T23:59:58.007Z level 9: x\n");
}

TEST(StandardErrorLog, IsTheSinkUntilToldOtherwise) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    std::jthread([] {
        framework::framework().threads.nameThisThread("writer");
        log().setMsgLevel(levelError) << "to standard";
        log() << " error\n";
        log().setMsgLevel(levelDebug) << "left out\n";
    }).join();
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(ends[1]);
    std::array<char, 256> buffer{};
    const ssize_t size = read(ends[0], buffer.data(), buffer.size() - 1);
    close(ends[0]);
    ASSERT_GT(size, 0);
    EXPECT_THAT(buffer.data(), MatchesRegex("[0-9T:.-]+Z error \\[writer\\]: to standard "
                                            "error\n"));
}
