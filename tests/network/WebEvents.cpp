// The event thread, and the event server's semaphores. The web event is reached past its access
// (-fno-access-control, for this file only).

#include "network/webEvents.h"

#include "fake/threads.h"
#include "network/EntityTest.h"
#include "support/CapturedOutput.h"

#include <boost/function/function_base.hpp>
#include <unistd.h>

#include <array>
#include <atomic>
#include <semaphore>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string pid = std::to_string(getpid());
const std::string startBanner = "--> HassComm: pid: [" + pid +
                                "] - init\n"
                                "--> HassComm: version (1): 'hassComm_0.0.1'\n";
const std::string stopBanner = "--> HassComm: pid: [" + pid + "] - stop\n";

class WebEvents : public EntityTest {
protected:
    void SetUp() override { kpi_sem = nullptr; }

    void TearDown() override {
        kpi_sem = nullptr;
        if (!HasFailure()) {
            EXPECT_EQ(output.take(), "");
        }
        EntityTest::TearDown();
    }

    /// A subscriber that writes down when it is called.
    void subscribe(const std::string& name) {
        entity().webEvent.subscribePost([this, name] { platform.journal.write(name); });
    }

    CapturedOutput output;
};

TEST_F(WebEvents, VersionIsTold) { EXPECT_STREQ(entity().hassComm_GetVersion(), "hassComm_0.0.1"); }

TEST_F(WebEvents, StartPrintsItsBannerAndAsksForAThread) {
    EXPECT_EQ(entity().hassComm_init(), 0);
    EXPECT_EQ(output.take(), startBanner);
    EXPECT_JOURNAL("pthread_create() -> 0");
    ASSERT_EQ(platform.threadRequests.size(), 1U);
    EXPECT_EQ(platform.threadRequests[0].function, &Network::hassComm_Proc);
    EXPECT_EQ(platform.threadRequests[0].argument, &entity());
}

TEST_F(WebEvents, StartSucceedsWithoutAThread) {
    platform.fail("pthread_create", 11);
    EXPECT_EQ(entity().hassComm_createThread(), 11);
    EXPECT_EQ(entity().hassComm_init(), 0);
    EXPECT_EQ(output.take(), startBanner);
    EXPECT_JOURNAL("pthread_create() -> 11", "pthread_create() -> 11");
}

TEST_F(WebEvents, StopPrintsItsBannerAndWaitsForNothing) {
    EXPECT_EQ(entity().hassComm_stop(), 0);
    EXPECT_EQ(output.take(), stopBanner);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(WebEvents, LoopCallsTheSubscribersOnceACycleInTheirOrder) {
    subscribe("a");
    subscribe("b");
    int cycles = 0;
    platform.onSleep = [&](unsigned int) {
        if (++cycles == 3) {
            entity().hassComm_stopThread();
        }
    };
    EXPECT_EQ(entity().hassComm_receiveMsgLoop(), 0);
    EXPECT_JOURNAL("a", "b", "sleep(100)", "a", "b", "sleep(100)", "a", "b", "sleep(100)");
}

TEST_F(WebEvents, LoopWithoutSubscribersOnlySleeps) {
    platform.onSleep = [](unsigned int) { entity().hassComm_stopThread(); };
    EXPECT_EQ(Network::hassComm_Proc(&entity()), nullptr);
    EXPECT_JOURNAL("sleep(100)");
}

TEST_F(WebEvents, PreHandlersAreNotAsked) {
    entity().webEvent.subscribePre([this] {
        platform.journal.write("asked");
        return true;
    });
    platform.onSleep = [](unsigned int) { entity().hassComm_stopThread(); };
    entity().hassComm_receiveMsgLoop();
    EXPECT_JOURNAL("sleep(100)");
}

TEST_F(WebEvents, StopIsSeenAfterTheSleepOnly) {
    entity().webEvent.subscribePost([] { entity().hassComm_stopThread(); });
    subscribe("after the stop");
    entity().hassComm_receiveMsgLoop();
    EXPECT_JOURNAL("after the stop", "sleep(100)");
}

TEST_F(WebEvents, StopBeforeTheStartIsForgotten) {
    entity().hassComm_stopThread();
    int cycles = 0;
    platform.onSleep = [&](unsigned int) {
        if (++cycles == 2) {
            entity().hassComm_stopThread();
        }
    };
    entity().hassComm_receiveMsgLoop();
    EXPECT_JOURNAL("sleep(100)", "sleep(100)");
}

TEST_F(WebEvents, SubscriberOfTheFirstCycleIsCalledFromTheNextOn) {
    int cycles = 0;
    platform.onSleep = [&](unsigned int) {
        if (++cycles == 1) {
            subscribe("late");
        } else {
            entity().hassComm_stopThread();
        }
    };
    entity().hassComm_receiveMsgLoop();
    EXPECT_JOURNAL("sleep(100)", "late", "sleep(100)");
}

TEST_F(WebEvents, EmptyHandlerRaisesTheFrameworksError) {
    subscribe("a");
    entity().webEvent.subscribePost({});
    subscribe("never called");
    EXPECT_THROW(
        {
            try {
                entity().hassComm_receiveMsgLoop();
            } catch (const boost::bad_function_call& error) {
                EXPECT_STREQ(error.what(), "call to empty boost::function");
                throw;
            }
        },
        boost::bad_function_call);
    EXPECT_JOURNAL("a");
}

using WebEventsDeathTest = WebEvents;

TEST_F(WebEventsDeathTest, EmptyHandlerEndsTheProcess) {
    EXPECT_EXIT(
        {
            entity().webEvent.subscribePost({});
            platform.runsThreads = true;
            entity().hassComm_createThread();
            fake::joinThreads();
        },
        testing::KilledBySignal(SIGABRT), "call to empty boost::function");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

/// Where the test meets each of the event threads, which it numbers in the order of their first
/// sleeps.
struct Meeting {
    std::binary_semaphore asleep{0};
    std::binary_semaphore goOn{0};
};

class EventThreads : public WebEvents {
protected:
    void SetUp() override {
        WebEvents::SetUp();
        subscribe("called");
        platform.runsThreads = true;
        platform.onSleep = [this](unsigned int) {
            thread_local const std::size_t number = next++;
            meetings.at(number).asleep.release();
            meetings.at(number).goOn.acquire();
        };
    }

    void start() {
        entity().hassComm_init();
        EXPECT_EQ(output.take(), startBanner);
    }

    void stop() {
        entity().hassComm_stop();
        EXPECT_EQ(output.take(), stopBanner);
    }

    std::vector<std::string> journalOf(const std::string& thread) {
        return platform.journal.takeOf(thread);
    }

    std::atomic<std::size_t> next = 0;
    std::array<Meeting, 2> meetings;
};

TEST_F(EventThreads, RunFromTheStartToTheEndOfTheCycleOfTheStop) {
    start();
    meetings[0].asleep.acquire();
    meetings[0].goOn.release();
    meetings[0].asleep.acquire();
    stop();
    meetings[0].goOn.release();
    fake::joinThreads();
    EXPECT_THAT(journalOf("thread 1"), ElementsAre("called", "sleep(100)", "called", "sleep(100)"));
    EXPECT_JOURNAL("pthread_create() -> 0");
}

TEST_F(EventThreads, LingerBesideANewOneThatIsStartedBeforeTheyHaveEnded) {
    start();
    meetings[0].asleep.acquire();
    stop();
    start();
    meetings[1].asleep.acquire();
    // The first was asked to end while it slept, and would have, had the second not started.
    meetings[0].goOn.release();
    meetings[0].asleep.acquire();
    stop();
    meetings[0].goOn.release();
    meetings[1].goOn.release();
    fake::joinThreads();
    EXPECT_THAT(journalOf("thread 1"), ElementsAre("called", "sleep(100)", "called", "sleep(100)"));
    EXPECT_THAT(journalOf("thread 2"), ElementsAre("called", "sleep(100)"));
    EXPECT_JOURNAL("pthread_create() -> 0", "pthread_create() -> 0");
}

// Semaphores.

TEST_F(WebEvents, CounterIsUnknownUntilItIsOpened) {
    EXPECT_EQ(entity().semaf_checkHassesSem(), -1);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(WebEvents, CounterIsOpenedAndNeverCreated) {
    EXPECT_EQ(entity().semaf_init(), 0);
    EXPECT_EQ(kpi_sem, nullptr);
    EXPECT_EQ(entity().semaf_checkHassesSem(), -1);
    EXPECT_JOURNAL(R"(sem_open("hassesKpiSem", 0) -> errno 2)");
    EXPECT_THAT(platform.ipc.semaphores, IsEmpty());
}

TEST_F(WebEvents, CounterIsZeroOrNot) {
    fake::Ipc::Semaphore& semaphore = platform.ipc.semaphores["hassesKpiSem"];
    EXPECT_EQ(entity().semaf_init(), 0);
    EXPECT_EQ(kpi_sem, &semaphore.handle);
    for (const unsigned int value : {0U, 1U, 3U, 0U}) {
        semaphore.value = value;
        EXPECT_EQ(entity().semaf_checkHassesSem(), value == 0 ? 0 : 1);
    }
    EXPECT_JOURNAL(R"(sem_open("hassesKpiSem", 0) -> 0)", R"(sem_getvalue("hassesKpiSem") -> 0 0)",
                   R"(sem_getvalue("hassesKpiSem") -> 0 1)",
                   R"(sem_getvalue("hassesKpiSem") -> 0 3)",
                   R"(sem_getvalue("hassesKpiSem") -> 0 0)");
}

TEST_F(WebEvents, CounterThatCannotBeReadIsZero) {
    platform.ipc.semaphores["hassesKpiSem"] = {3};
    entity().semaf_init();
    platform.fail("sem_getvalue", 22);
    EXPECT_EQ(entity().semaf_checkHassesSem(), 0);
    EXPECT_JOURNAL(R"(sem_open("hassesKpiSem", 0) -> 0)",
                   R"(sem_getvalue("hassesKpiSem") -> errno 22)");
}

}  // namespace
