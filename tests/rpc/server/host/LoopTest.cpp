// The main loop: which proxies run it, what it does with every outcome of select(2), how it ends.

#include "HostTest.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace {

constexpr const char* loopNames[] = {"BLLManager_mng", "dhcpra_fun"};

const std::string looked = "select(1024, set, none, none, 1.000000 s)";
const std::string served = "svc_getreqset()";

std::vector<int> descriptorsOf(const fd_set& set) {
    std::vector<int> descriptors;
    for (int descriptor = 0; descriptor < FD_SETSIZE; ++descriptor) {
        if (FD_ISSET(descriptor, &set)) {
            descriptors.push_back(descriptor);
        }
    }
    return descriptors;
}

/// One pass of the loop: what select(2) makes of the set, and its result.
using Pass = std::function<int(fd_set*)>;

Pass result(int count) {
    return [count](fd_set*) { return count; };
}

Pass failure(int error) {
    return [error](fd_set*) {
        errno = error;
        return -1;
    };
}

/// The parameter is the proxy's name.
class Loop : public HostTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        FD_ZERO(&svc_fdset);
        onServiceStart = [this](void*) { platform.journal.write("service starts"); };
        platform.onSelect = [this](fd_set* set) {
            if (nextPass < passes.size()) {
                return passes[nextPass++](set);
            }
            ADD_FAILURE() << "the loop goes on after its last pass";
            return untilInterruption(result(0))(set);
        };
    }

    void TearDown() override {
        FD_ZERO(&svc_fdset);
        HostTest::TearDown();
    }

    /// The pass during which the thread is asked to end: it goes on when it has been.
    Pass untilInterruption(const Pass& pass) {
        return [this, pass](fd_set* set) {
            interruptNow.release();
            awaitInterruptionRequest();
            return pass(set);
        };
    }

    /// Runs a loop through passes, of which one lasts until the interruption. Returns what the loop
    /// printed.
    std::string run(std::vector<Pass> scripted) {
        passes = std::move(scripted);
        nextPass = 0;
        RPCProxy proxy(HostTest::serviceStart, name);
        std::string printed = printedBy([&] {
            EXPECT_TRUE(proxy.start());
            interruptNow.acquire();
            EXPECT_TRUE(proxy.stop(false));
        });
        EXPECT_EQ(nextPass, passes.size());
        return printed;
    }

    /// What the loop did, behind the service's start.
    std::vector<std::string> journalOfLoop() {
        std::vector<std::string> entries = journalOf(name);
        const std::vector<std::string> start = {fmt::format("registerThread(\"{}\")", name),
                                                "service starts"};
        if (entries.size() < 2 || entries[0] != start[0] || entries[1] != start[1]) {
            ADD_FAILURE() << "started otherwise: " << testing::PrintToString(entries);
            return {};
        }
        entries.erase(entries.begin(), entries.begin() + 2);
        return entries;
    }

    std::string printedAtStart() const {
        return fmt::format("[{}] {}: Starting main RPC loop - custom made.\n", getpid(), name);
    }

    std::string printedAtStop() const {
        return fmt::format("[{}] {}: RPC main loop stopping.\n", getpid(), name);
    }

    const std::string name = GetParam();
    std::vector<Pass> passes;
    std::size_t nextPass = 0;
    std::binary_semaphore interruptNow{0};
};

INSTANTIATE_TEST_SUITE_P(, Loop, testing::ValuesIn(loopNames),
                         [](const auto& test) { return test.param; });

TEST_P(Loop, SaysThatItStartsAndThatItStops) {
    const std::string printed = run({untilInterruption([](fd_set*) {
        std::fputs("a pass\n", stderr);
        return 0;
    })});
    EXPECT_EQ(printed, printedAtStart() + "a pass\n" + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked));
}

// The kernel leaves the remaining time, which the loop must not go on with.
TEST_P(Loop, WaitsASecondAgainAndAgain) {
    EXPECT_EQ(run({result(0), result(0), result(0), untilInterruption(result(0))}),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked, looked, looked));
}

TEST_P(Loop, ServesWhatIsReady) {
    EXPECT_EQ(run({result(1), result(0), result(7), untilInterruption(result(0))}),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, served, looked, looked, served, looked));
}

TEST_P(Loop, ServesWhatIsReadyBeforeItStops) {
    EXPECT_EQ(run({untilInterruption(result(1))}), printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, served));
}

TEST_P(Loop, StopsAfterTheRequestDuringWhichItIsInterrupted) {
    platform.onRequests = [this](fd_set*) {
        interruptNow.release();
        awaitInterruptionRequest();
        platform.journal.write("request served");
    };
    EXPECT_EQ(run({result(1)}), printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, served, "request served"));
}

TEST_P(Loop, StopsFromWithinARequestThatHeedsInterruptions) {
    platform.onRequests = [this](fd_set*) {
        interruptNow.release();
        awaitInterruptionRequest();
        boost::this_thread::interruption_point();
        platform.journal.write("request served");
    };
    EXPECT_EQ(run({result(1)}), printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, served));
}

TEST_P(Loop, LooksAgainAfterASignal) {
    EXPECT_EQ(run({failure(EINTR), result(0), failure(EINTR), failure(EINTR),
                   untilInterruption(result(0))}),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked, looked, looked, looked));
}

// A signal is no occasion to stop: the next pass is.
TEST_P(Loop, LooksAgainAfterASignalThoughItIsInterrupted) {
    EXPECT_EQ(run({untilInterruption(failure(EINTR)), result(0)}),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked));
    EXPECT_EQ(run({untilInterruption(failure(EINTR)), result(1)}),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked, served));
}

TEST_P(Loop, EndsWhenItCannotLook) {
    const std::pair<int, std::string> errors[] = {
        {EBADF, "9 - Bad file descriptor"},
        {EINVAL, "22 - Invalid argument"},
        {ENOMEM, "12 - Cannot allocate memory"},
        {EAGAIN, "11 - Resource temporarily unavailable"}};
    for (const auto& [error, text] : errors) {
        const Pass last = [this, error = error](fd_set* set) {
            interruptNow.release();
            return failure(error)(set);
        };
        EXPECT_EQ(run({result(0), last}),
                  printedAtStart() +
                      fmt::format("[{}] {}: RPC main loop stopping ({}).\n", getpid(), name, text));
        EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked));
    }
}

TEST_P(Loop, TellsOfTheErrorThoughItIsInterrupted) {
    EXPECT_EQ(run({untilInterruption(failure(EBADF))}),
              printedAtStart() +
                  fmt::format("[{}] {}: RPC main loop stopping (9 - Bad file descriptor).\n",
                              getpid(), name));
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked));
}

TEST_P(Loop, LooksAtAllServicesInEveryPass) {
    FD_SET(3, &svc_fdset);
    FD_SET(1023, &svc_fdset);
    std::vector<std::vector<int>> sets;
    const auto note = [&sets](const Pass& pass) {
        return [&sets, pass](fd_set* set) {
            sets.push_back(descriptorsOf(*set));
            return pass(set);
        };
    };
    const Pass clear = [](fd_set* set) {
        FD_ZERO(set);
        return 0;
    };
    const Pass addService = [](fd_set*) {
        FD_SET(5, &svc_fdset);
        return 0;
    };
    run({note(clear), note(failure(EINTR)), note(addService), note(untilInterruption(result(0)))});
    EXPECT_THAT(sets, ElementsAre(ElementsAre(3, 1023), ElementsAre(3, 1023), ElementsAre(3, 1023),
                                  ElementsAre(3, 5, 1023)));
    EXPECT_THAT(descriptorsOf(svc_fdset), ElementsAre(3, 5, 1023));
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked, looked, looked));
}

TEST_P(Loop, ServesJustTheReady) {
    FD_SET(3, &svc_fdset);
    FD_SET(4, &svc_fdset);
    std::vector<int> ready;
    platform.onRequests = [&](fd_set* set) { ready = descriptorsOf(*set); };
    run({untilInterruption([](fd_set* set) {
        FD_CLR(3, set);
        return 1;
    })});
    EXPECT_THAT(ready, ElementsAre(4));
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, served));
}

TEST_P(Loop, DestructionOfTheProxyStopsIt) {
    passes = {result(0), untilInterruption(result(0))};
    const std::string printed = printedBy([&] {
        RPCProxy proxy(HostTest::serviceStart, name);
        EXPECT_TRUE(proxy.start());
        interruptNow.acquire();
    });
    EXPECT_EQ(printed, printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked, looked));
}

TEST_P(Loop, RunsAgainAfterAStop) {
    RPCProxy proxy(HostTest::serviceStart, name);
    for (int round = 0; round < 2; ++round) {
        passes = {untilInterruption(result(0))};
        nextPass = 0;
        EXPECT_EQ(printedBy([&] {
                      EXPECT_TRUE(proxy.start());
                      interruptNow.acquire();
                      EXPECT_TRUE(proxy.stop(false));
                  }),
                  printedAtStart() + printedAtStop());
        EXPECT_THAT(journalOfLoop(), ElementsAre(looked));
    }
}

TEST_P(Loop, StopWithoutWaitingGivesUpWhileAPassLasts) {
    Gate gate;
    passes = {[&](fd_set*) {
        gate.pass();
        return 0;
    }};
    RPCProxy proxy(HostTest::serviceStart, name);
    EXPECT_EQ(printedBy([&] {
                  EXPECT_TRUE(proxy.start());
                  gate.awaitArrival();
                  EXPECT_FALSE(proxy.stop(true));
                  EXPECT_FALSE(proxy.isStopped());
                  gate.open();
                  EXPECT_TRUE(proxy.stop(false));
              }),
              printedAtStart() + printedAtStop());
    EXPECT_THAT(journalOfLoop(), ElementsAre(looked));
}

/// A proxy whose name is none of the loop's.
class NoLoop : public HostTest, public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(, NoLoop,
                         testing::Values("Network_mng", "BLLManager_mng2", "BLLManager_mn",
                                         "bllmanager_mng", " BLLManager_mng", "dhcpra_fu",
                                         "dhcpra_func", "DHCPRA_FUN", "dhcpra_fun ",
                                         std::string("BLLManager_mng\0", 15),
                                         std::string("dhcpra_fun\0x", 12), ""));

TEST_P(NoLoop, EndsAfterTheServicesStart) {
    const std::string& name = GetParam();
    std::binary_semaphore ended{0};
    onServiceStart = [&](void*) {
        announceEndOfThread(ended);
        platform.journal.write("service starts");
    };
    RPCProxy proxy(HostTest::serviceStart, name);
    EXPECT_EQ(printedBy([&] {
                  EXPECT_TRUE(proxy.start());
                  ended.acquire();
              }),
              "");
    EXPECT_FALSE(proxy.start());
    EXPECT_TRUE(proxy.stop(false));
    std::vector<std::string> entries = journalOf(name);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_THAT(entries[0], StartsWith("registerThread("));
    EXPECT_EQ(entries[1], "service starts");
}

class LoopDeathTest : public HostTest {
protected:
    LoopDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(LoopDeathTest, AnErrorOfARequestEndsTheProcess) {
    platform.onSelect = [](fd_set*) { return 1; };
    platform.onRequests = [](fd_set*) { throw std::runtime_error("the request is too much"); };
    EXPECT_EXIT(
        {
            RPCProxy loop(HostTest::serviceStart, "BLLManager_mng");
            loop.start();
            loop.stop(false);
        },
        testing::KilledBySignal(SIGABRT), "the request is too much");
}

}  // namespace
