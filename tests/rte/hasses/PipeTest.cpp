// The way into the event server's pipe.

#include "rte/hasses/HassesTest.h"

#include <cerrno>

namespace {

const std::string opened = R"(open("/var/run/hasses/SSE_EVENT", 1) -> 1000)";
const std::string wroteHello = R"(write(1000, "hello\x00") -> 6)";

class Pipe : public HassesTest {
protected:
    int send(std::string text) { return producer.pipe_send(text.data()); }

    HassesComm_Period_base_cl producer;
};

TEST_F(Pipe, IsOpenedForEachMessageWhichEndsWithANul) {
    EXPECT_EQ(send("hello"), 0);
    EXPECT_THAT(journal(), ElementsAre(opened, wroteHello, "close(1000) -> 0"));
    EXPECT_EQ(send(""), 0);
    EXPECT_THAT(journal(), ElementsAre(R"(open("/var/run/hasses/SSE_EVENT", 1) -> 1001)",
                                       R"(write(1001, "\x00") -> 1)", "close(1001) -> 0"));
    EXPECT_EQ(platform.ipc.eventPipeContent, std::string("hello\0\0", 7));
    EXPECT_EQ(printed(), "");
}

TEST_F(Pipe, TextsAreNotCut) {
    const std::string text(5000, 'x');
    EXPECT_EQ(send(text), 0);
    EXPECT_EQ(platform.ipc.eventPipeContent, text + '\0');
    journal();
}

TEST_F(Pipe, MessageWithoutTextIsNone) {
    producer.printout(-1);
    EXPECT_EQ(producer.pipe_send(nullptr), -1);
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_EQ(printed(), "");
}

TEST_F(Pipe, ThatCannotBeOpenedIsAlwaysTold) {
    platform.fail("open", ENOENT);
    for (const int flags : {0, -1}) {
        producer.printout(flags);
        EXPECT_EQ(send("hello"), -1);
        EXPECT_THAT(journal(), ElementsAre(R"(open("/var/run/hasses/SSE_EVENT", 1) -> errno 2)"));
        EXPECT_EQ(printed(),
                  "Pipe error: open() - pipename = '/var/run/hasses/SSE_EVENT', "
                  "errno = 2 = 'No such file or directory'\n");
    }
}

TEST_F(Pipe, ThatExistsIsTakenForOpenAndThenCannotBeWritten) {
    platform.fail("open", EEXIST);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_THAT(journal(), ElementsAre(R"(open("/var/run/hasses/SSE_EVENT", 1) -> errno 17)",
                                       R"(write(-1, "hello\x00") -> errno 9)"));
    EXPECT_EQ(printed(), "Pipe error: write() - 9\n");
}

TEST_F(Pipe, ThatCannotBeWrittenStaysOpen) {
    platform.fail("write", EPIPE);
    for (const int flags : {0, -1}) {
        producer.printout(flags);
        EXPECT_EQ(send("hello"), -1);
        EXPECT_EQ(printed(), "Pipe error: write() - 32\n");
    }
    EXPECT_THAT(journal(), ElementsAre(opened, R"(write(1000, "hello\x00") -> errno 32)",
                                       R"(open("/var/run/hasses/SSE_EVENT", 1) -> 1001)",
                                       R"(write(1001, "hello\x00") -> errno 32)"));
}

TEST_F(Pipe, ThatCannotBeClosedIsAFailureThoughTheMessageWent) {
    platform.fail("close", EIO);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_THAT(journal(), ElementsAre(opened, wroteHello, "close(1000) -> errno 5"));
    EXPECT_EQ(printed(), "Pipe error: close() - 5\n");
    producer.printout(4);
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(printed(),
              "--> MESSAGE WROTE - pipename = '/var/run/hasses/SSE_EVENT'\n"
              "s = 'hello'\nres = 6\nPipe error: close() - 5\n");
    journal();
}

TEST_F(Pipe, FlagFourAloneTracesWrites) {
    for (const int flags : {0, 1, 2, 8, ~4}) {
        producer.printout(-1);
        producer.printout(flags);
        EXPECT_EQ(send("hello"), 0);
        EXPECT_EQ(printed(), "") << flags;
    }
    for (const int flags : {4, 12, -1}) {
        producer.printout(flags);
        EXPECT_EQ(send("hello"), 0);
        EXPECT_EQ(printed(),
                  "--> MESSAGE WROTE - pipename = '/var/run/hasses/SSE_EVENT'\n"
                  "s = 'hello'\nres = 6\n")
            << flags;
    }
    journal();
}

}  // namespace
