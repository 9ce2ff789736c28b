// The sender on a message queue.

#include "rte/hasses/HassesTest.h"

#include <array>
#include <bit>
#include <cerrno>

namespace {

constexpr int key = 1708033;
constexpr int type = 1001;

const std::string created = "msgget(1708033, 01666) -> 500";
const std::string asked = "msgctl(500, IPC_STAT) -> 0 qnum=0 qbytes=16384 uid=11 gid=12 mode=0666";
const std::string raised = "msgctl(500, IPC_SET qbytes=10000000 uid=11 gid=12 mode=0666) -> 0";
const std::string sentHello = R"(msgsnd(500, 1001 "hello", 2000, 04000) -> 0)";

class Queue : public HassesTest {
protected:
    Queue() { sender.msgq_setParams(key, type); }

    int send(std::string text) { return sender.msgq_send(text.data()); }

    /// What is in the queue, which no test has removed.
    std::vector<fake::Ipc::Message>& messages() { return platform.ipc.queues.at(500).messages; }

    HassesComm_Msgq_cl sender;
};

TEST_F(Queue, IsCreatedForEverybodyAndItsByteLimitAloneIsChanged) {
    EXPECT_EQ(sender.msgq_create(), 0);
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised));
    EXPECT_EQ(platform.ipc.queues.at(500).byteLimit, 10000000U);
}

TEST_F(Queue, ThatIsThereIsOpened) {
    platform.ipc.queues[77] = {key, 0600};
    EXPECT_EQ(sender.msgq_create(), 0);
    EXPECT_THAT(journal(),
                ElementsAre("msgget(1708033, 01666) -> 77",
                            "msgctl(77, IPC_STAT) -> 0 qnum=0 qbytes=16384 uid=11 gid=12 mode=0600",
                            "msgctl(77, IPC_SET qbytes=10000000 uid=11 gid=12 mode=0600) -> 0"));
}

TEST_F(Queue, ThatCannotBeHadIsMinusOneWithoutAWord) {
    sender.printout(8 | 1);
    platform.fail("msgget", ENOSPC);
    EXPECT_EQ(sender.msgq_create(), -1);
    EXPECT_THAT(journal(), ElementsAre("msgget(1708033, 01666) -> errno 28"));
    EXPECT_EQ(printed(), "");
}

TEST_F(Queue, ThatCannotBeAskedIsOne) {
    platform.fail("msgctl IPC_STAT", EACCES);
    for (const int flags : {0, 1, 4, 7}) {
        sender.printout(flags);
        EXPECT_EQ(sender.msgq_create(), 1);
        EXPECT_EQ(printed(), "") << flags;
    }
    for (const int flags : {8, 9, 0xff, -1}) {
        sender.printout(flags);
        EXPECT_EQ(sender.msgq_create(), 1);
        EXPECT_EQ(printed(), "  msgctl( IPC_STAT ) - res = -1, errno = 13\n") << flags;
    }
    EXPECT_THAT(journal(), SizeIs(2 * 8));
}

TEST_F(Queue, ThatCannotBeAskedIsNotChanged) {
    platform.fail("msgctl IPC_STAT", EACCES);
    EXPECT_EQ(sender.msgq_create(), 1);
    EXPECT_THAT(journal(), ElementsAre(created, "msgctl(500, IPC_STAT) -> errno 13"));
}

TEST_F(Queue, ThatCannotBeEnlargedIsOne) {
    platform.fail("msgctl IPC_SET", EPERM);
    EXPECT_EQ(sender.msgq_create(), 1);
    EXPECT_THAT(journal(),
                ElementsAre(created, asked,
                            "msgctl(500, IPC_SET qbytes=10000000 uid=11 gid=12 mode=0666) -> "
                            "errno 1"));
    EXPECT_EQ(printed(), "");
    sender.printout(8);
    EXPECT_EQ(sender.msgq_create(), 1);
    EXPECT_EQ(printed(), "  msgctl( IPC_SET ) - res = -1, errno = 1\n");
    journal();
}

TEST_F(Queue, IsInitialisedOnce) {
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised));
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Queue, InitialisationHidesItsFailureAndIsTriedAgain) {
    for (const std::string call : {"msgget", "msgctl IPC_STAT", "msgctl IPC_SET"}) {
        platform.fail(call, EACCES, 2);
        EXPECT_EQ(sender.msgq_init(), 0);
        EXPECT_EQ(sender.msgq_init(), 0);
        EXPECT_THAT(journal(), Contains(EndsWith("errno 13")).Times(2)) << call;
    }
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised));
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Queue, FirstMessageMakesIt) {
    EXPECT_EQ(send("hello"), 0);
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised, sentHello));
    EXPECT_EQ(send("hello"), 0);
    EXPECT_THAT(journal(), ElementsAre(sentHello));
    EXPECT_EQ(printed(), "");
}

TEST_F(Queue, MessagesAreSentWhole) {
    EXPECT_EQ(send("hello"), 0);
    ASSERT_THAT(messages(), SizeIs(1));
    EXPECT_EQ(messages()[0].type, 1001);
    EXPECT_EQ(messages()[0].area.size(), 2000U);
    EXPECT_EQ(messages()[0].area.substr(0, 6), std::string("hello\0", 6));
    journal();
}

TEST_F(Queue, TextsAreCutTo1999Characters) {
    std::string text;
    for (int index = 0; index < 5000; ++index) {
        text += static_cast<char>('!' + index % 90);
    }
    for (const std::size_t length : {0U, 1U, 1998U, 1999U, 2000U, 2001U, 5000U}) {
        EXPECT_EQ(send(text.substr(0, length)), 0);
        const fake::Ipc::Message& message = messages().back();
        EXPECT_EQ(message.text(), text.substr(0, std::min<std::size_t>(length, 1999))) << length;
        EXPECT_EQ(message.area.size(), 2000U);
        EXPECT_NE(message.area.find('\0'), std::string::npos);
    }
    EXPECT_THAT(messages(), SizeIs(7));
    journal();
}

TEST_F(Queue, BytesOfTheTextAreNotLookedAt) {
    const std::string text = "\x01\t\"\\%s%n\x7f\x80\xff";
    sender.printout(1);
    EXPECT_EQ(send(text), 0);
    EXPECT_EQ(messages()[0].text(), text);
    EXPECT_THAT(printed(), HasSubstr("buf.mtext = '" + text + "', res = 0\n"));
    journal();
}

TEST_F(Queue, MessageWithoutTextIsNone) {
    sender.printout(-1);
    EXPECT_EQ(sender.msgq_send(nullptr), -1);
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_EQ(printed(), "");
}

TEST_F(Queue, MessageGoesOnAfterAFailedCreation) {
    platform.fail("msgget", EACCES, 1);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_THAT(journal(), ElementsAre("msgget(1708033, 01666) -> errno 13",
                                       R"(msgsnd(-1, 1001 "hello", 2000, 04000) -> errno 22)"));
    EXPECT_EQ(send("hello"), 0);
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised, sentHello));
    EXPECT_EQ(printed(), "");
}

TEST_F(Queue, MessageIsSentThoughTheLimitCannotBeRaised) {
    platform.fail("msgctl IPC_SET", EPERM);
    sender.printout(8);
    EXPECT_EQ(send("one"), 0);
    EXPECT_EQ(send("two"), 0);
    EXPECT_EQ(printed(),
              "  msgctl( IPC_SET ) - res = -1, errno = 1\n"
              "  msgctl( IPC_SET ) - res = -1, errno = 1\n");
    ASSERT_THAT(messages(), SizeIs(2));
    EXPECT_EQ(messages()[1].text(), "two");
    journal();
}

TEST_F(Queue, FullOneLosesTheMessage) {
    ASSERT_EQ(send("hello"), 0);
    journal();
    platform.ipc.queues.at(500).byteLimit = 2000;
    EXPECT_EQ(send("lost"), -1);
    EXPECT_THAT(journal(), ElementsAre(R"(msgsnd(500, 1001 "lost", 2000, 04000) -> errno 11)"));
    EXPECT_THAT(messages(), SizeIs(1));
    EXPECT_EQ(printed(), "");
}

TEST_F(Queue, RemovedOneIsNeverMadeAgain) {
    ASSERT_EQ(send("hello"), 0);
    journal();
    platform.ipc.queues.clear();
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_THAT(journal(), ElementsAre(R"(msgsnd(500, 1001 "lost", 2000, 04000) -> errno 22)"));
}

TEST_F(Queue, NewParametersDoNotMakeAnother) {
    ASSERT_EQ(send("hello"), 0);
    journal();
    sender.msgq_setParams(4711, 5);
    EXPECT_EQ(send("more"), 0);
    EXPECT_THAT(journal(), ElementsAre(R"(msgsnd(500, 5 "more", 2000, 04000) -> 0)"));
}

const std::string trace =
    "--> rte/required/include/hasses/HassesComm.cpp:96 - msgq_send() - MESSAGE SENT - "
    "buf.mtype = 1001, buf.mtext = 'hello', res = ";

TEST_F(Queue, FlagOneTracesEveryMessage) {
    ASSERT_EQ(sender.msgq_init(), 0);
    for (const int flags : {1, 1 | 4, 1 | 8}) {
        sender.printout(flags);
        EXPECT_EQ(send("hello"), 0);
        EXPECT_EQ(printed(), trace + "0\n") << flags;
    }
    sender.printout(1);
    platform.fail("msgsnd", EAGAIN);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(printed(), trace + "-1\n");
    journal();
}

TEST_F(Queue, TraceShowsTheTextAsItWasCut) {
    sender.printout(1);
    EXPECT_EQ(send(std::string(1999, 'a') + "bcd"), 0);
    EXPECT_THAT(printed(), EndsWith("aaa', res = 0\n"));
    journal();
}

TEST_F(Queue, FlagEightTellsOfFailures) {
    ASSERT_EQ(sender.msgq_init(), 0);
    sender.printout(8);
    EXPECT_EQ(send("hello"), 0);
    EXPECT_EQ(printed(), "");
    platform.fail("msgsnd", EAGAIN);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(printed(), "  msgsnd(), res = -1, errno = 11 = 'Resource temporarily unavailable'\n");
    platform.fail("msgsnd", EIDRM);
    sender.printout(8 | 1);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(printed(), trace + "-1\n  msgsnd(), res = -1, errno = 43 = 'Identifier removed'\n");
    journal();
}

TEST_F(Queue, OtherFlagsTellNothing) {
    ASSERT_EQ(sender.msgq_init(), 0);
    platform.fail("msgsnd", EAGAIN);
    for (const int flags : {0, 2, 4, 16, ~(1 | 8)}) {
        sender.printout(-1);
        sender.printout(flags);
        EXPECT_EQ(send("hello"), -1);
        EXPECT_EQ(printed(), "") << flags;
    }
    journal();
}

TEST_F(Queue, CountsItsMessages) {
    ASSERT_EQ(send("one"), 0);
    ASSERT_EQ(send("two"), 0);
    journal();
    int count = 77;
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_THAT(
        journal(),
        ElementsAre("msgctl(500, IPC_STAT) -> 0 qnum=2 qbytes=10000000 uid=11 gid=12 mode=0666"));
}

TEST_F(Queue, CountWithoutAPlaceForItAsksNothing) {
    EXPECT_EQ(sender.msgq_getNumberOfMsg(nullptr), -1);
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Queue, CountThatCannotBeHadLeavesThePlaceAlone) {
    sender.printout(8);
    int count = 77;
    // Counting does not make the queue.
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), -1);
    EXPECT_THAT(journal(), ElementsAre("msgctl(-1, IPC_STAT) -> errno 22"));
    ASSERT_EQ(sender.msgq_init(), 0);
    journal();
    platform.fail("msgctl IPC_STAT", EACCES);
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), -1);
    EXPECT_THAT(journal(), ElementsAre("msgctl(500, IPC_STAT) -> errno 13"));
    EXPECT_EQ(count, 77);
    EXPECT_EQ(printed(), "");
}

// The order of the members is part of the interface.
TEST_F(Queue, KeepsItsMembersInOrder) {
    using Members = std::array<int, 5>;
    HassesComm_Msgq_cl fresh;
    EXPECT_EQ(std::bit_cast<Members>(fresh)[0], 0);
    EXPECT_EQ(std::bit_cast<Members>(fresh)[1], 0);
    sender.printout(8);
    ASSERT_EQ(sender.msgq_init(), 0);
    EXPECT_EQ(std::bit_cast<Members>(sender), (Members{8, 1, 500, key, type}));
    journal();
}

TEST_F(Queue, OutlivesItsSender) {
    {
        HassesComm_Msgq_cl other;
        other.msgq_setParams(key, type);
        other.msgq_init();
    }
    EXPECT_THAT(journal(), ElementsAre(created, asked, raised));
    EXPECT_EQ(platform.ipc.queues.size(), 1U);
}

}  // namespace
