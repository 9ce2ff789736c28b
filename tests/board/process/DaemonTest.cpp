#include "board/process/Daemon.h"
#include "support/LogLines.h"
#include "support/files.h"
#include "support/matchers.h"
#include "tests/board/process/scripts.h"

#include <signal.h>

#include <fstream>
#include <string>

namespace {

using namespace daemontest;
using std::chrono::seconds;

constexpr seconds patience{20};

/// A program that notes its starts, what it reads at them and at SIGHUP, and its orderly end.
class DaemonTest : public testing::Test {
protected:
    DaemonTest() {
        writeScript(program, "echo $$ >>" + starts.string() +
                                 "\n"
                                 "take() { cat " +
                                 configuration.string() + " >>" + taken.string() +
                                 "; }\n"
                                 "trap 'take; echo reread' HUP\n"
                                 "trap 'echo end >>" +
                                 ends.string() +
                                 "; exit 0' TERM\n"
                                 "take\n"
                                 "echo ready\n"
                                 "while :; do sleep 0.02; done\n");
        configure("first");
    }

    void configure(const std::string& text) { std::ofstream(configuration) << text << '\n'; }

    pid_t process() const {
        const std::string text = contentOf(starts);
        const auto end = text.find_last_not_of('\n');
        return std::stoi(text.substr(text.rfind('\n', end) + 1));
    }

    TemporaryDirectory directory;
    const std::filesystem::path program = directory / "program";
    const std::filesystem::path configuration = directory / "configuration";
    const std::filesystem::path starts = directory / "starts";
    const std::filesystem::path taken = directory / "taken";
    const std::filesystem::path ends = directory / "ends";
    const std::vector<std::string> command{program.string()};
    LogLines lines;
    const process::Daemon::Traits traits{
        .name = "the program", .readyMark = "ready", .reloadedMark = "reread"};
};

TEST_F(DaemonTest, RunsWhatIsWantedUntilItIsNot) {
    process::Daemon daemon(traits, lines.receiver());
    EXPECT_NO_THROW(daemon.checkRuns());
    daemon.want(command);
    daemon.await(patience);
    EXPECT_EQ(contentOf(taken), "first\n");
    EXPECT_EQ(::kill(process(), 0), 0);
    daemon.want({});
    daemon.await(patience);
    EXPECT_EQ(contentOf(ends), "end\n");
    EXPECT_NE(::kill(process(), 0), 0);
}

TEST_F(DaemonTest, TakesAChangeWithoutBeingStartedAnew) {
    process::Daemon daemon(traits, lines.receiver());
    daemon.want(command, "key");
    daemon.await(patience);
    configure("second");
    daemon.want(command, "key");
    daemon.await(patience);
    EXPECT_EQ(contentOf(taken), "first\nsecond\n");
    EXPECT_EQ(linesOf(starts), 1);
}

TEST_F(DaemonTest, IsNotToldOfAChangeBeforeItUnderstandsIt) {
    // The signal would end it: the trap is not set yet.
    writeScript(program, "sleep 0.3\n" + contentOf(program));
    process::Daemon daemon(traits, lines.receiver());
    daemon.want(command);
    configure("second");
    daemon.want(command);
    daemon.await(patience);
    EXPECT_THAT(contentOf(taken), EndsWith("second\n"));
    EXPECT_EQ(linesOf(starts), 1);
    EXPECT_FALSE(lines.contain("has ended"));
}

TEST_F(DaemonTest, IsStartedAnewForAnotherKey) {
    process::Daemon daemon(traits, lines.receiver());
    daemon.want(command, "key");
    daemon.await(patience);
    configure("second");
    daemon.want(command, "other key");
    daemon.await(patience);
    EXPECT_EQ(contentOf(taken), "first\nsecond\n");
    EXPECT_EQ(linesOf(starts), 2);
    EXPECT_EQ(contentOf(ends), "end\n");
}

TEST_F(DaemonTest, WithoutWordsOfItsOwnRunsWhenItHasRunForAMoment) {
    process::Daemon daemon({.name = "the program"}, lines.receiver());
    daemon.want(command);
    daemon.await(patience);
    EXPECT_EQ(contentOf(taken), "first\n");
    daemon.want(command);
    daemon.await(patience);
    EXPECT_EQ(linesOf(starts), 2);
}

TEST_F(DaemonTest, ThatIsKilledIsStartedAgain) {
    process::Daemon daemon(traits, lines.receiver());
    daemon.want(command);
    daemon.await(patience);
    ASSERT_EQ(::kill(process(), SIGKILL), 0);
    EXPECT_TRUE(eventually([&] { return linesOf(starts) == 2; }));
    EXPECT_TRUE(lines.contain("3 the program has ended with signal 9"));
    EXPECT_TRUE(eventually([&] {
        try {
            daemon.checkRuns();
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }));
}

TEST_F(DaemonTest, ThatIsMissingIsToldAndTriedAgain) {
    process::Daemon daemon(traits, lines.receiver());
    daemon.want({(directory / "missing").string()});
    EXPECT_TRUE(eventually([&] {
        return lines.contain(
            "No such file or directory; it is started "
            "again in 1 s");
    }));
    try {
        daemon.checkRuns();
        FAIL() << "it is said to run";
    } catch (const std::exception& error) {
        EXPECT_THAT(error.what(), HasSubstr("the program has ended with status 127: cannot run "));
    }
    // A change is tried at once, whatever the pause.
    const auto before = std::chrono::steady_clock::now();
    daemon.want(command);
    EXPECT_NO_THROW(daemon.await(patience));
    EXPECT_EQ(linesOf(starts), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - before, seconds(5));
    EXPECT_NO_THROW(daemon.checkRuns());
}

TEST_F(DaemonTest, ThatRefusesItsConfigurationIsToldWithItsOwnWords) {
    writeScript(program, "echo 'line 3 is wrong' >&2\nexit 4\n");
    process::Daemon daemon(traits, lines.receiver());
    daemon.want(command);
    EXPECT_TRUE(eventually([&] { return lines.contain("with status 4: line 3 is wrong"); }));
    daemon.want(command, "other");
    try {
        daemon.await(patience);
        FAIL() << "it is said to run";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "the program has ended with status 4: line 3 is wrong");
    }
}

TEST_F(DaemonTest, ThatDoesNotEndIsKilled) {
    writeScript(program, "trap '' TERM\necho ready\nwhile :; do sleep 0.02; done\n");
    const auto before = std::chrono::steady_clock::now();
    {
        process::Daemon daemon(traits, lines.receiver());
        daemon.want(command);
        daemon.await(patience);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - before, seconds(10));
}

}  // namespace
