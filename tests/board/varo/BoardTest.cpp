#include "tests/board/varo/VaroTest.h"

#include <fmt/format.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <future>
#include <thread>
#include <utility>

namespace {

using namespace varotest;

class Board : public VaroTest {
protected:
    Board() {
        varo::Configuration configuration;
        configuration.stateDirectory = state;
        configuration.log = log.receiver();
        configuration.acsPidFile = pidFile;
        configuration.boardPosition = 5;
        varo::configure(configuration);
    }
    const std::filesystem::path pidFile = directory.path() / "acs.pid";
};

/// A process that waits for a signal.
class Waiting {
public:
    Waiting() : process(::fork()) {
        if (process == 0) {
            for (;;) {
                ::pause();
            }
        }
    }
    ~Waiting() {
        if (process > 0) {
            ::kill(process, SIGKILL);
            waitFor(process);
        }
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    pid_t id() const { return process; }
    /// The signal that ends it.
    int awaitEnd() { return WTERMSIG(waitFor(std::exchange(process, -1))); }

private:
    pid_t process;
};

TEST_F(Board, KnowsItsPosition) {
    std::uint32_t position = 0;
    EXPECT_EQ(varoGetMyBoardPos(&position), varo::success);
    EXPECT_EQ(position, 5U);
    EXPECT_EQ(varoGetMyBoardPos(nullptr), varo::invalidArgument);
}

TEST_F(Board, SignalsTheAutoConfigurationClient) {
    Waiting client;
    writeFile(pidFile, fmt::format("{}\n", client.id()));
    EXPECT_EQ(varoSendSigToAcs(SIGUSR1), varo::success);
    EXPECT_EQ(client.awaitEnd(), SIGUSR1);
}

TEST_F(Board, HasNobodyToSignalWithoutAPidFile) {
    EXPECT_EQ(varoSendSigToAcs(SIGUSR1), varo::success);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Board, HasNobodyToSignalWhenThePidFileIsStale) {
    pid_t ended = 0;
    {
        const Waiting client;
        ended = client.id();
    }
    varoLib_s_internalConfig config{};
    ASSERT_EQ(varoUpdateInternalConfig(&config, 6), varo::success);
    writeFile(pidFile, std::to_string(ended));
    EXPECT_EQ(varoSendSigToAcs(SIGUSR1), varo::success);
    EXPECT_THAT(log.lines(),
                ElementsAre(fmt::format("6 {} names process {}, which does not run: nobody is told "
                                        "of the change",
                                        pidFile.string(), ended)));
}

TEST_F(Board, RefusesAPidFileThatNamesNoProcess) {
    for (const char* content : {"", "0", "1", "-1", "12x", "0x10", "99999999999999", "12 13"}) {
        writeFile(pidFile, content);
        EXPECT_EQ(varoSendSigToAcs(SIGUSR1), varo::systemFailed) << content;
        EXPECT_THAT(log.take(), ElementsAre(fmt::format("3 varoSendSigToAcs: {} does not hold a "
                                                        "process id",
                                                        pidFile.string())));
    }
}

TEST_F(Board, ReportsAProcessThatCannotBeSignalled) {
    // A thread that is not its process's first is nothing that a signal can be sent to.
    std::promise<pid_t> id;
    std::promise<void> end;
    std::thread thread([&] {
        id.set_value(::gettid());
        end.get_future().wait();
    });
    const pid_t other = id.get_future().get();
    writeFile(pidFile, std::to_string(other));
    EXPECT_EQ(varoSendSigToAcs(SIGUSR1), varo::systemFailed);
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith(fmt::format(
                                 "3 varoSendSigToAcs: cannot signal process {}: ", other))));
    end.set_value();
    thread.join();
}

TEST_F(Board, RefusesSignalsThatThereAreNot) {
    for (const int signal : {-1, 0, 65, 1000}) {
        EXPECT_EQ(varoSendSigToAcs(signal), varo::invalidValue) << signal;
        EXPECT_THAT(log.take(),
                    ElementsAre(fmt::format("3 varoSendSigToAcs: there is no signal {}", signal)));
    }
}

TEST_F(ClosedVaroTest, BoardPositionIsOneUnlessConfigured) {
    ASSERT_EQ(varoLibInit(), varo::success);
    std::uint32_t position = 0;
    EXPECT_EQ(varoGetMyBoardPos(&position), varo::success);
    EXPECT_EQ(position, 1U);
}

}  // namespace
