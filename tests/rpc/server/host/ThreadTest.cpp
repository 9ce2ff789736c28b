// Start, stop and end of a proxy's thread.

#include "HostTest.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

/// How long isStopped() waits, and how much longer it may take.
constexpr std::chrono::milliseconds patience{100};
constexpr std::chrono::milliseconds tolerance{50};

/// Asks in vain whether a proxy has stopped. Expects that to take a tenth of a second, no less, and
/// no more either: a busy machine lengthens a wait, but not all that a minute has room for.
void expectPatience(const std::function<bool()>& isStopped) {
    const auto end = Clock::now() + std::chrono::minutes(1);
    Clock::duration shortest = Clock::duration::max();
    while (shortest > patience + tolerance && Clock::now() < end) {
        const auto before = Clock::now();
        EXPECT_FALSE(isStopped());
        shortest = std::min(shortest, Clock::now() - before);
    }
    EXPECT_GE(shortest, patience);
    EXPECT_LE(shortest, patience + tolerance);
}

const auto registeredOnce = ElementsAre(R"(registerThread("service"))");

class Thread : public HostTest {
protected:
    std::atomic<int> starts = 0;
    RPCProxy proxy{serviceStart, "service"};
};

/// A proxy whose thread stands at a gate within the service's start function.
class HeldThread : public Thread {
protected:
    void SetUp() override {
        onServiceStart = [this](void*) {
            ++starts;
            gate.pass();
            afterGate();
        };
        ASSERT_TRUE(proxy.start());
        gate.awaitArrival();
        EXPECT_THAT(journalOf("service"), registeredOnce);
    }

    Gate gate;
    std::function<void()> afterGate = [] {};
};

TEST_F(Thread, ConstructionStartsNothing) {
    EXPECT_TRUE(proxy.isStopped());
    EXPECT_EQ(starts, 0);
}

TEST_F(Thread, IsRegisteredBeforeTheServiceStarts) {
    onServiceStart = [this](void*) { platform.journal.write("service starts"); };
    EXPECT_TRUE(proxy.start());
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_THAT(journalOf("service"),
                ElementsAre(R"(registerThread("service"))", "service starts"));
}

TEST_F(Thread, HasANameOfItsOwn) {
    std::string name = "first";
    RPCProxy named(serviceStart, name);
    name = "second";
    EXPECT_TRUE(named.start());
    EXPECT_TRUE(named.stop(false));
    EXPECT_THAT(journalOf("first"), ElementsAre(R"(registerThread("first"))"));
}

// The check stands behind the thread in the proxy: a service may keep its address as long as the
// proxy lives.
TEST_F(Thread, HandsTheServiceTheAddressOfTheInterruptCheck) {
    using Check = std::uint64_t (*)();
    void* handed = nullptr;
    std::optional<std::uint64_t> answer;
    Gate gate;
    onServiceStart = [&](void* argument) {
        handed = argument;
        answer = (*static_cast<Check*>(argument))();
        gate.pass();
    };
    ASSERT_TRUE(proxy.start());
    gate.awaitArrival();
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_EQ(handed, reinterpret_cast<char*>(&proxy) + sizeof(boost::thread));
    EXPECT_EQ(*static_cast<Check*>(handed), &checkInterrupt);
    EXPECT_EQ(answer, 0U);
    EXPECT_THAT(journalOf("service"), registeredOnce);
}

TEST_F(HeldThread, TheCheckTellsOfAnInterruptionOnce) {
    std::vector<std::uint64_t> answers;
    afterGate = [&] {
        answers.push_back(checkInterrupt());
        gate.pass();
        awaitInterruptionRequest();
        answers.push_back(checkInterrupt());
        answers.push_back(checkInterrupt());
    };
    gate.open();
    gate.awaitArrival();
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_THAT(answers, ElementsAre(0, 1, 0));
}

TEST(CheckInterrupt, IsNeverSetOnAThreadThatBoostDidNotStart) { EXPECT_EQ(checkInterrupt(), 0U); }

TEST(CheckInterrupt, WaitsWhileInterruptionsAreDisabled) {
    std::vector<std::uint64_t> answers;
    boost::thread thread([&] {
        awaitInterruptionRequest();
        {
            const boost::this_thread::disable_interruption disabled;
            answers.push_back(checkInterrupt());
        }
        answers.push_back(checkInterrupt());
    });
    thread.interrupt();
    thread.join();
    EXPECT_THAT(answers, ElementsAre(0, 1));
}

TEST_F(HeldThread, ASecondStartFailsAndStartsNoThread) {
    EXPECT_FALSE(proxy.start());
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_EQ(starts, 1);
}

// An ended thread is still to be joined.
TEST_F(HeldThread, ASecondStartFailsAfterTheEndToo) {
    std::binary_semaphore ended{0};
    afterGate = [&] { announceEndOfThread(ended); };
    gate.open();
    ended.acquire();
    EXPECT_FALSE(proxy.start());
    EXPECT_EQ(starts, 1);
    EXPECT_TRUE(proxy.stop(false));
}

TEST_F(Thread, StartsAnewAfterStop) {
    onServiceStart = [this](void*) { ++starts; };
    for (int round = 1; round <= 3; ++round) {
        EXPECT_TRUE(proxy.start());
        EXPECT_TRUE(proxy.stop(false));
        EXPECT_EQ(starts, round);
        EXPECT_THAT(journalOf("service"), registeredOnce);
    }
}

TEST_F(Thread, StopBeforeStartSucceeds) {
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_TRUE(proxy.stop(true));
    EXPECT_TRUE(proxy.isStopped());
}

TEST_F(HeldThread, StopWithoutWaitingGivesUpAfterATenthOfASecond) {
    expectPatience([this] { return proxy.stop(true); });
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
}

TEST_F(HeldThread, StopWithoutWaitingInterrupts) {
    std::uint64_t interrupted = 0;
    afterGate = [&] { interrupted = checkInterrupt(); };
    EXPECT_FALSE(proxy.stop(true));
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_EQ(interrupted, 1U);
}

TEST_F(HeldThread, StopWaitsForTheEnd) {
    std::atomic<bool> isOver = false;
    afterGate = [&] {
        awaitInterruptionRequest();
        isOver = true;
    };
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_TRUE(isOver);
}

TEST_F(HeldThread, AskingWhetherItStoppedDoesNotInterrupt) {
    std::uint64_t interrupted = 1;
    afterGate = [&] { interrupted = checkInterrupt(); };
    expectPatience([this] { return proxy.isStopped(); });
    gate.open();
    while (!proxy.isStopped()) {
    }
    EXPECT_EQ(interrupted, 0U);
}

TEST_F(HeldThread, StoppedOnceIsStopped) {
    gate.open();
    while (!proxy.stop(true)) {
    }
    EXPECT_TRUE(proxy.isStopped());
    EXPECT_TRUE(proxy.stop(true));
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_EQ(starts, 1);
}

TEST_F(Thread, DestructionInterruptsAndWaits) {
    std::uint64_t interrupted = 0;
    onServiceStart = [&](void*) {
        awaitInterruptionRequest();
        interrupted = checkInterrupt();
    };
    {
        RPCProxy other(serviceStart, "other");
        ASSERT_TRUE(other.start());
    }
    EXPECT_EQ(interrupted, 1U);
    EXPECT_THAT(journalOf("other"), ElementsAre(R"(registerThread("other"))"));
}

TEST_F(HeldThread, StoppingItselfAndWaitingIsRefused) {
    std::optional<boost::thread_resource_error> refusal;
    std::uint64_t interrupted = 0;
    std::binary_semaphore ended{0};
    afterGate = [&] {
        announceEndOfThread(ended);
        try {
            proxy.stop(false);
        } catch (const boost::thread_resource_error& error) {
            refusal = error;
        }
        interrupted = checkInterrupt();
    };
    gate.open();
    ended.acquire();
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->code().value(), 35);
    EXPECT_THAT(refusal->what(), HasSubstr("boost thread: trying joining itself"));
    EXPECT_EQ(interrupted, 1U);
    EXPECT_TRUE(proxy.stop(false));
}

TEST_F(Thread, StartFailsSilentlyWithoutAThread) {
    onServiceStart = [this](void*) { ++starts; };
    platform.fail("boost::thread", EAGAIN, 2);
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(proxy.start());
                  EXPECT_FALSE(proxy.start());
              }),
              "");
    EXPECT_EQ(starts, 0);
    EXPECT_THAT(journalOf("service"), IsEmpty());
    EXPECT_TRUE(proxy.isStopped());

    EXPECT_TRUE(proxy.start());
    EXPECT_TRUE(proxy.stop(false));
    EXPECT_EQ(starts, 1);
    EXPECT_THAT(journalOf("service"), registeredOnce);
}

TEST_F(HeldThread, AClockThatCannotBeReadIsAnError) {
    const auto message = testing::Property(
        &std::runtime_error::what, std::string("could not convert calendar time to UTC time"));
    platform.fail("gmtime_r", 1, 2);
    EXPECT_THAT([&] { proxy.isStopped(); }, testing::Throws<std::runtime_error>(message));
    EXPECT_THAT([&] { proxy.stop(true); }, testing::Throws<std::runtime_error>(message));
    gate.open();
    EXPECT_TRUE(proxy.stop(false));
}

TEST_F(Thread, TheClockIsNotReadWithoutAThread) {
    platform.fail("gmtime_r", 1);
    EXPECT_TRUE(proxy.isStopped());
    EXPECT_TRUE(proxy.stop(true));
}

class ThreadDeathTest : public Thread {
protected:
    ThreadDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(ThreadDeathTest, AnErrorOfTheServicesStartEndsTheProcess) {
    onServiceStart = [](void*) { throw std::runtime_error("the service does not start"); };
    EXPECT_EXIT(
        {
            proxy.start();
            proxy.stop(false);
        },
        testing::KilledBySignal(SIGABRT), "the service does not start");
}

TEST_F(ThreadDeathTest, DestructionOnItsOwnThreadEndsTheProcess) {
    std::unique_ptr<RPCProxy> own;
    Gate gate;
    onServiceStart = [&](void*) {
        gate.pass();
        own.reset();
    };
    EXPECT_EXIT(
        {
            own = std::make_unique<RPCProxy>(serviceStart, "own");
            own->start();
            gate.open();
            std::this_thread::sleep_for(std::chrono::minutes(1));
        },
        testing::KilledBySignal(SIGABRT), "boost thread: trying joining itself");
}

}  // namespace
