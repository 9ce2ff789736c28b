// Who waits for the lock, in which order, and how long.

#include "LockFixture.h"
#include "board/framework/ReentrantSharedLock.h"
#include "doubles.h"

#include <atomic>
#include <barrier>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <random>
#include <string>
#include <thread>
#include <vector>

using std::chrono::milliseconds;
using test::ample;
using test::brief;
using test::Journal;

namespace {

class ReentrantSharedLockQueueTest : public test::LockFixture {
protected:
    /// A thread that stands at the end of the queue, and notes its name while it holds the lock.
    void queueWriter(const std::string& name) {
        queue([this, name] {
            ASSERT_TRUE(lock.lockExclusive());
            order.add(name);
            lock.unlockExclusive();
        });
    }
    void queueReader(const std::string& name, std::barrier<>* together = nullptr) {
        queue([this, name, together] {
            ASSERT_TRUE(lock.lockShared());
            if (together != nullptr) {
                together->arrive_and_wait();
            }
            order.add(name);
            lock.unlockShared();
        });
    }

    /// The names, once all threads are done.
    std::vector<std::string> served() {
        queued.clear();
        return order.lines();
    }

private:
    void queue(std::function<void()> body) {
        queued.emplace_back(std::move(body));
        awaitWaiting(queued.size());
    }

    Journal order;
    std::vector<std::jthread> queued;
};

}  // namespace

TEST_F(ReentrantSharedLockQueueTest, AWaiterIsServedWhenTheHolderReleases) {
    ASSERT_TRUE(lock.lockExclusive());
    queueReader("reader");
    lock.unlockExclusive();
    EXPECT_THAT(served(), ElementsAre("reader"));
}

TEST_F(ReentrantSharedLockQueueTest, ReadersBehindAWriterThatGivesUpAreAdmitted) {
    ASSERT_TRUE(lock.lockShared());
    lock.setWaitLimit(milliseconds(200));
    auto writer = std::async(std::launch::async, [this] { return lock.lockExclusive(); });
    awaitWaiting(1);
    lock.setWaitLimit(ample);
    std::latch bothIn(2);
    std::vector<std::jthread> readers;
    for (int number = 0; number < 2; ++number) {
        readers.emplace_back([&] {
            const bool obtained = lock.lockShared();
            EXPECT_TRUE(obtained);
            bothIn.arrive_and_wait();
            if (obtained) {
                lock.unlockShared();
            }
        });
    }
    EXPECT_FALSE(writer.get());
    // They are in although this thread has not released its hold.
    bothIn.wait();
    EXPECT_EQ(lock.waiting(), 0u);
    lock.unlockShared();
}

TEST_F(ReentrantSharedLockQueueTest, AWaiterInTheMiddleMayGiveUp) {
    ASSERT_TRUE(lock.lockExclusive());
    queueWriter("first");
    lock.setWaitLimit(brief);
    EXPECT_FALSE(elsewhere([this] { return lock.lockShared(); }));
    lock.setWaitLimit(ample);
    queueWriter("third");
    lock.unlockExclusive();
    EXPECT_THAT(served(), ElementsAre("first", "third"));
}

TEST_F(ReentrantSharedLockQueueTest, ServesInTheOrderOfArrivalAndNeighbouringReadersTogether) {
    ASSERT_TRUE(lock.lockExclusive());
    std::barrier both(2);
    queueReader("readers 1", &both);
    queueReader("readers 1", &both);
    queueWriter("writer 2");
    queueWriter("writer 3");
    queueReader("readers 4", &both);
    queueReader("readers 4", &both);
    queueWriter("writer 5");
    lock.unlockExclusive();
    EXPECT_THAT(served(), ElementsAre("readers 1", "readers 1", "writer 2", "writer 3", "readers 4",
                                      "readers 4", "writer 5"));
}

TEST_F(ReentrantSharedLockQueueTest, AReaderQueuesBehindAWaitingWriter) {
    ASSERT_TRUE(lock.lockShared());
    queueWriter("writer");
    queueReader("reader");
    lock.unlockShared();
    EXPECT_THAT(served(), ElementsAre("writer", "reader"));
}

// Four readers that release and take it again at once leave hardly a moment without a reader.
TEST_F(ReentrantSharedLockQueueTest, ReadersWithoutAGapDoNotStarveAWriter) {
    constexpr int readerCount = 4;
    std::atomic<bool> writerWasIn{false};
    std::latch allRead(readerCount);
    std::vector<std::jthread> readers;
    for (int number = 0; number < readerCount; ++number) {
        readers.emplace_back([&] {
            ASSERT_TRUE(lock.lockShared());
            allRead.arrive_and_wait();
            while (!writerWasIn) {
                lock.unlockShared();
                ASSERT_TRUE(lock.lockShared());
            }
            lock.unlockShared();
        });
    }
    allRead.wait();
    EXPECT_TRUE(lock.lockExclusive());
    writerWasIn = true;
    lock.unlockExclusive();
}

TEST_F(ReentrantSharedLockQueueTest, WritersWithoutAGapDoNotStarveAReader) {
    std::atomic<bool> readerWasIn{false};
    std::latch started(3);
    std::vector<std::jthread> writers;
    for (int number = 0; number < 3; ++number) {
        writers.emplace_back([&] {
            ASSERT_TRUE(lock.lockExclusive());
            started.count_down();
            lock.unlockExclusive();
            while (!readerWasIn) {
                ASSERT_TRUE(lock.lockExclusive());
                lock.unlockExclusive();
            }
        });
    }
    started.wait();
    EXPECT_TRUE(lock.lockShared());
    readerWasIn = true;
    lock.unlockShared();
}

// Plain members, touched only under the lock: the thread sanitizer sees any hold that is none.
TEST_F(ReentrantSharedLockQueueTest, KeepsWritersApartUnderLoad) {
    constexpr int threadCount = 6;
    constexpr int rounds = 3'000;
    lock.setWaitLimit(milliseconds(1));
    long value = 0;
    long mirror = 0;
    std::atomic<long> written{0};
    std::atomic<long> torn{0};
    std::vector<std::jthread> threads;
    for (unsigned number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            std::minstd_rand random(number + 1);
            for (int round = 0; round < rounds; ++round) {
                if (random() % 4 == 0) {
                    if (!lock.lockExclusive()) {
                        continue;
                    }
                    ++value;
                    EXPECT_TRUE(lock.lockShared());
                    EXPECT_TRUE(lock.lockExclusive());
                    ++mirror;
                    lock.unlockExclusive();
                    lock.unlockShared();
                    lock.unlockExclusive();
                    ++written;
                } else {
                    if (!lock.lockShared()) {
                        continue;
                    }
                    torn += value == mirror ? 0 : 1;
                    EXPECT_TRUE(lock.lockShared());
                    EXPECT_FALSE(lock.lockExclusive());
                    lock.unlockShared();
                    lock.unlockShared();
                }
            }
        });
    }
    threads.clear();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(value, written);
    EXPECT_EQ(mirror, written);
    EXPECT_EQ(lock.waiting(), 0u);
    EXPECT_TRUE(isFreeForWriters());
}
