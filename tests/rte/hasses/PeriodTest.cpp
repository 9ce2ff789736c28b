// The base of periodic producers: its counting, and its own queue.

#include "rte/hasses/HassesTest.h"

#include <array>
#include <bit>
#include <cerrno>

namespace {

const std::vector<std::string> creation = {
    "msgget(1708034, 01666) -> 500",
    "msgctl(500, IPC_STAT) -> 0 qnum=0 qbytes=16384 uid=11 gid=12 mode=0666",
    "msgctl(500, IPC_SET qbytes=10000000 uid=11 gid=12 mode=0666) -> 0",
};

class Period : public HassesTest {
protected:
    /// What the next calls say, one digit each.
    std::string dues(int calls) {
        std::string digits;
        for (int call = 0; call < calls; ++call) {
            digits += std::to_string(producer.isIntervalDue());
        }
        return digits;
    }

    HassesComm_Period_base_cl producer;
};

TEST_F(Period, OfAFreshProducerIsDueAtEveryTick) { EXPECT_EQ(dues(6), "111111"); }

TEST_F(Period, IsDueOnceInItsLength) {
    const std::vector<std::pair<unsigned int, std::string>> sequences = {
        {0, "111111"},         {1, "111111"},   {100, "111111"},
        {101, "101010"},       {200, "101010"}, {201, "100100"},
        {250, "100100"},       {300, "100100"}, {1000, "100000000010000000001"},
        {4294967295U, "1000"},
    };
    for (const auto& [interval, sequence] : sequences) {
        producer = {};
        producer.setInterval(interval);
        EXPECT_EQ(dues(static_cast<int>(sequence.size())), sequence) << interval;
    }
}

TEST_F(Period, BeginsAnewWhenTheCountIsReset) {
    producer.setInterval(1000);
    EXPECT_EQ(dues(4), "1000");
    producer.resetEventCount();
    EXPECT_EQ(dues(11), "10000000001");
}

TEST_F(Period, NewLengthCountsFromWhereThePeriodStands) {
    producer.setInterval(1000);
    EXPECT_EQ(dues(5), "10000");
    producer.setInterval(600);
    EXPECT_EQ(dues(3), "010");
    producer.setInterval(100);
    EXPECT_EQ(dues(2), "11");
}

TEST_F(Period, SendsOnAQueueOfItsOwn) {
    EXPECT_EQ(producer.msgq_send("tick"), 0);
    std::vector<std::string> expected = creation;
    expected.emplace_back(R"(msgsnd(500, 1002 "tick", 2000, 04000) -> 0)");
    EXPECT_EQ(journal(), expected);
    EXPECT_EQ(producer.msgq_send("tock"), 0);
    EXPECT_THAT(journal(), ElementsAre(R"(msgsnd(500, 1002 "tock", 2000, 04000) -> 0)"));
    EXPECT_EQ(platform.ipc.queues.at(500).key, 1708034);
    EXPECT_EQ(printed(), "");
}

TEST_F(Period, LongTextIsCutInTheQueueOnly) {
    const std::string text(2345, 'x');
    producer.printout(8);
    EXPECT_EQ(producer.msgq_send(text), 0);
    EXPECT_EQ(platform.ipc.queues.at(500).messages.at(0).text(), text.substr(0, 1999));
    EXPECT_EQ(printed(), "--> MESSAGE WROTE - s = '" + text + "'\nres = 0\n");
    journal();
}

TEST_F(Period, SendSucceedsWhateverHappens) {
    producer.printout(-1);
    platform.fail("msgget", EACCES, 1);
    EXPECT_EQ(producer.msgq_send("first"), 0);
    // The initialisation is tried twice for one message: by itself, and by the sender.
    std::vector<std::string> expected = creation;
    expected.insert(expected.begin(), "msgget(1708034, 01666) -> errno 13");
    expected.emplace_back(R"(msgsnd(500, 1002 "first", 2000, 04000) -> 0)");
    EXPECT_EQ(journal(), expected);
    platform.fail("msgsnd", EAGAIN);
    EXPECT_EQ(producer.msgq_send("lost"), 0);
    EXPECT_THAT(journal(), ElementsAre(R"(msgsnd(500, 1002 "lost", 2000, 04000) -> errno 11)"));
    // The trace comes before the send, and the sender's own printout stays 0.
    EXPECT_EQ(printed(),
              "--> MESSAGE WROTE - s = 'first'\nres = 0\n"
              "--> MESSAGE WROTE - s = 'lost'\nres = 0\n");
}

TEST_F(Period, FlagEightAloneTracesSends) {
    for (const int flags : {0, 1, 2, 4, 16, ~8}) {
        producer.printout(-1);
        producer.printout(flags);
        EXPECT_EQ(producer.msgq_send("tick"), 0);
        EXPECT_EQ(printed(), "") << flags;
    }
    for (const int flags : {8, 12, -1}) {
        producer.printout(flags);
        EXPECT_EQ(producer.msgq_send("tick"), 0);
        EXPECT_EQ(printed(), "--> MESSAGE WROTE - s = 'tick'\nres = 0\n") << flags;
    }
    journal();
}

// The order of the members is part of the interface.
TEST_F(Period, KeepsItsMembersInOrder) {
    using Members = std::array<int, 8>;
    const Members fresh = std::bit_cast<Members>(producer);
    EXPECT_EQ(std::vector<int>(fresh.begin(), fresh.begin() + 5),
              (std::vector<int>{0, 100, 0, 0, 0}));
    producer.printout(8);
    producer.setInterval(300);
    dues(2);
    producer.msgq_send("tick");
    EXPECT_EQ(std::bit_cast<Members>(producer), (Members{8, 300, 2, 0, 1, 500, 1708034, 1002}));
    journal();
    printed();
    EXPECT_THAT(journal(), IsEmpty());
}

}  // namespace
