#include "mngctl/events/eventParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mngctl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> told(const std::vector<Event>& events) {
    std::vector<std::string> all;
    for (const Event& event : events) {
        all.push_back(event.id + "|" + event.name + "|" + event.text);
    }
    return all;
}

TEST(EventParser, ReadsNumberNameAndLines) {
    EventParser parser;
    EXPECT_THAT(told(parser.take("id: 7\nevent: events\ndata: {\ndata:  \"a\"\ndata: }\n\n")),
                ElementsAre("7|events|{\n \"a\"\n}"));
}

TEST(EventParser, TakesPiecesOfAnySize) {
    EventParser parser;
    const std::string stream = "id:1\nevent:a\ndata:x\n\nid:2\ndata:y\n\n";
    std::vector<Event> events;
    for (const char byte : stream) {
        const auto more = parser.take({&byte, 1});
        events.insert(events.end(), more.begin(), more.end());
    }
    EXPECT_THAT(told(events), ElementsAre("1|a|x", "2|message|y"));
}

TEST(EventParser, KnowsAllLineEnds) {
    EventParser parser;
    EXPECT_THAT(told(parser.take("data: a\r\ndata: b\rdata: c\n\r\n")),
                ElementsAre("|message|a\nb\nc"));
}

TEST(EventParser, PassesOverWhatIsNoEvent) {
    EventParser parser;
    EXPECT_THAT(told(parser.take("retry: 1000\n\n: still here\n\nevent: a\n\nnonsense\n\n")),
                IsEmpty());
    EXPECT_THAT(told(parser.take("data\n\n")), ElementsAre("|message|"));
}

TEST(EventParser, KeepsTheNumberForEventsWithoutOne) {
    EventParser parser;
    EXPECT_THAT(told(parser.take("id: 3\ndata: a\n\ndata: b\n\n")),
                ElementsAre("3|message|a", "3|message|b"));
}

TEST(EventParser, DoesNotGrowWithoutBound) {
    EventParser parser;
    const std::string piece(1 << 16, 'x');
    parser.take("data: ");
    for (int i = 0; i < 64; ++i) {
        parser.take(piece);
    }
    const auto events = parser.take("\n\ndata: next\n\n");
    ASSERT_EQ(events.size(), 2U);
    EXPECT_LE(events[0].text.size(), 1U << 20);
    EXPECT_EQ(events[1].text, "next");
}

std::string restart(const std::string& cause) {
    return "{\n  \"ietf-restconf:notification\": {\n    \"eventTime\": \"2024-03-01T10:20:30Z\",\n"
           "    \"VANTORIX-MSAN-MIB:RebootStatusIndication\": {\n"
           "      \"lastRestartCause\": \"" +
           cause + "\"\n    }\n  }\n}";
}

TEST(Notification, TellsTimeAndCauseAsRecorded) {
    for (const std::string cause :
         {"power-on", "", "say \"no\"", "C:\\new", "x\"}}} {\"y\": \"z", "caf\xE9", "a\tb"}) {
        const Notification read = readNotification(restart(cause));
        EXPECT_EQ(read.time, "2024-03-01T10:20:30Z") << cause;
        EXPECT_EQ(read.restartCause, cause);
        EXPECT_FALSE(read.isCutOff);
    }
}

TEST(Notification, SaysThatACauseIsCutOff) {
    const std::string whole = restart(std::string(5000, 'x'));
    const Notification read = readNotification(whole.substr(0, 1992));
    EXPECT_EQ(read.time, "2024-03-01T10:20:30Z");
    EXPECT_TRUE(read.isCutOff);
    EXPECT_TRUE(whole.starts_with(whole.substr(0, whole.find("xxx")) + *read.restartCause));
}

TEST(Notification, ReadsOneThatIsWrittenAnotherWay) {
    const Notification read = readNotification(
        R"({"ietf-restconf:notification": {"eventTime": "T", )"
        R"("VANTORIX-MSAN-MIB:RebootStatusIndication": {"lastRestartCause": "a\"b"}}})");
    EXPECT_EQ(read.time, "T");
    EXPECT_EQ(read.restartCause, "a\"b");
    EXPECT_FALSE(read.isCutOff);
}

TEST(Notification, TellsNothingOfOtherTexts) {
    for (const std::string text :
         {"", "plain", "{}", "[1]", "{\"ietf-restconf:notification\": 1}",
          R"({"ietf-restconf:notification": {"eventTime": 5}})", "{\"ietf-restconf:notifi"}) {
        const Notification read = readNotification(text);
        EXPECT_FALSE(read.restartCause) << text;
        EXPECT_FALSE(read.time) << text;
    }
    EXPECT_EQ(
        readNotification(R"({"ietf-restconf:notification": {"eventTime": "T", "x": {}}})").time,
        "T");
}

}  // namespace
}  // namespace mngctl
