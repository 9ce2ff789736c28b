#include "LockFixture.h"
#include "board/framework/ReentrantSharedLock.h"

#include <barrier>
#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::ample;
using test::brief;

namespace {

class ReentrantSharedLockTest : public test::LockFixture {};

}  // namespace

TEST_F(ReentrantSharedLockTest, ReadersHoldItTogether) {
    std::barrier together(3);
    std::vector<std::jthread> readers;
    for (int number = 0; number < 3; ++number) {
        readers.emplace_back([&] {
            ASSERT_TRUE(lock.lockShared());
            together.arrive_and_wait();
            lock.unlockShared();
        });
    }
    readers.clear();
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, AWriterExcludesEverybodyElse) {
    ASSERT_TRUE(lock.lockExclusive());
    lock.setWaitLimit(brief);
    EXPECT_FALSE(isFreeForReaders());
    EXPECT_FALSE(isFreeForWriters());
    lock.unlockExclusive();
    lock.setWaitLimit(ample);
    EXPECT_TRUE(isFreeForReaders());
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, AReaderExcludesWriters) {
    ASSERT_TRUE(lock.lockShared());
    lock.setWaitLimit(brief);
    EXPECT_FALSE(isFreeForWriters());
    EXPECT_TRUE(isFreeForReaders());
    lock.unlockShared();
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, AWriterMayTakeItAgainInEitherMode) {
    lock.setWaitLimit(milliseconds::zero());
    ASSERT_TRUE(lock.lockExclusive());
    ASSERT_TRUE(lock.lockShared());
    ASSERT_TRUE(lock.lockExclusive());
    ASSERT_TRUE(lock.lockShared());
    EXPECT_FALSE(isFreeForReaders());

    lock.unlockShared();
    lock.unlockExclusive();
    lock.unlockShared();
    EXPECT_FALSE(isFreeForReaders());
    lock.unlockExclusive();
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, AReaderMayTakeItSharedAgainWhileAWriterWaits) {
    ASSERT_TRUE(lock.lockShared());
    std::jthread writer([this] {
        ASSERT_TRUE(lock.lockExclusive());
        lock.unlockExclusive();
    });
    awaitWaiting(1);
    EXPECT_TRUE(lock.lockShared());
    lock.unlockShared();
    EXPECT_EQ(lock.waiting(), 1u);
    lock.unlockShared();
}

TEST_F(ReentrantSharedLockTest, AReaderIsRefusedAnExclusiveHoldAtOnce) {
    ASSERT_TRUE(lock.lockShared());
    const auto begin = steady_clock::now();
    EXPECT_FALSE(lock.lockExclusive());
    EXPECT_LT(steady_clock::now() - begin, ample);

    lock.setWaitLimit(milliseconds::zero());
    EXPECT_TRUE(isFreeForReaders());
    EXPECT_FALSE(isFreeForWriters());
    lock.unlockShared();
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, AWriterThatKeepsASharedHoldGoesOnAsAReader) {
    ASSERT_TRUE(lock.lockExclusive());
    ASSERT_TRUE(lock.lockShared());
    auto reader = std::async(std::launch::async, [this] { return isFreeForReaders(); });
    awaitWaiting(1);
    lock.unlockExclusive();
    EXPECT_TRUE(reader.get());

    lock.setWaitLimit(milliseconds::zero());
    EXPECT_FALSE(isFreeForWriters());
    EXPECT_FALSE(lock.lockExclusive());
    lock.unlockShared();
    EXPECT_TRUE(isFreeForWriters());
}

TEST_F(ReentrantSharedLockTest, WithoutAWaitLimitLeftOnlyAFreeLockIsGranted) {
    lock.setWaitLimit(milliseconds::zero());
    EXPECT_TRUE(isFreeForWriters());
    ASSERT_TRUE(lock.lockShared());
    EXPECT_FALSE(isFreeForWriters());
    EXPECT_TRUE(isFreeForReaders());
    lock.unlockShared();
}

TEST_F(ReentrantSharedLockTest, ARefusalHoldsNothingAndTheThreadMayTryAgain) {
    ASSERT_TRUE(lock.lockExclusive());
    lock.setWaitLimit(brief);
    std::barrier step(2);
    std::jthread other([&] {
        EXPECT_FALSE(lock.lockShared());
        EXPECT_THROW(lock.unlockShared(), std::logic_error);
        EXPECT_FALSE(lock.lockExclusive());
        EXPECT_THROW(lock.unlockExclusive(), std::logic_error);
        step.arrive_and_wait();
        step.arrive_and_wait();
        EXPECT_TRUE(lock.lockExclusive());
        lock.unlockExclusive();
    });
    step.arrive_and_wait();
    EXPECT_EQ(lock.waiting(), 0u);
    lock.unlockExclusive();
    step.arrive_and_wait();
}

TEST_F(ReentrantSharedLockTest, RefusesToReleaseWhatIsNotHeld) {
    EXPECT_THROW(lock.unlockShared(), std::logic_error);
    EXPECT_THROW(lock.unlockExclusive(), std::logic_error);
    ASSERT_TRUE(lock.lockShared());
    EXPECT_THROW(lock.unlockExclusive(), std::logic_error);
    EXPECT_TRUE(elsewhere([this] {
        try {
            lock.unlockShared();
            return false;
        } catch (const std::logic_error&) {
            return true;
        }
    }));
    lock.unlockShared();
    EXPECT_TRUE(isFreeForWriters());
}
