#include "board/web/EventLog.h"
#include "support/matchers.h"

#include <thread>

namespace web {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::vector<std::string> textsOf(const std::vector<Event>& events) {
    std::vector<std::string> texts;
    for (const Event& event : events) {
        texts.push_back(std::to_string(event.id) + " " + event.name + " " + event.text);
    }
    return texts;
}

TEST(EventLog, NamesWhatStandsBeforeTheEqualsSign) {
    EventLog log;
    log.add("events={\"a\": \"b=c\"}");
    EXPECT_THAT(textsOf(log.after(0, milliseconds(0))), ElementsAre("1 events {\"a\": \"b=c\"}"));
}

TEST(EventLog, TakesATextWithoutANameAsAMessage) {
    EventLog log;
    log.add("{\"a\"=1}");
    log.add("=x");
    log.add("plain");
    EXPECT_THAT(textsOf(log.after(0, milliseconds(0))),
                ElementsAre("1 message {\"a\"=1}", "2 message =x", "3 message plain"));
}

TEST(EventLog, TellsWhatCameAfterANumber) {
    EventLog log;
    log.add("one");
    log.add("two");
    EXPECT_THAT(textsOf(log.after(1, milliseconds(0))), ElementsAre("2 message two"));
    EXPECT_THAT(log.after(2, milliseconds(0)), IsEmpty());
}

TEST(EventLog, TellsEverythingAfterANumberOfAnEarlierLife) {
    EventLog log;
    EXPECT_THAT(log.after(57, milliseconds(0)), IsEmpty());
    log.add("one");
    EXPECT_THAT(textsOf(log.after(57, milliseconds(0))), ElementsAre("1 message one"));
}

TEST(EventLog, KeepsTheLatestHundred) {
    EventLog log;
    for (int count = 0; count < 150; ++count) {
        log.add("x");
    }
    const auto kept = log.after(0, milliseconds(0));
    EXPECT_EQ(kept.size(), 100U);
    EXPECT_EQ(kept.front().id, 51U);
}

TEST(EventLog, WakesThoseWhoWait) {
    EventLog log;
    std::vector<Event> seen;
    std::thread follower([&] { seen = log.after(0, seconds(30)); });
    log.add("now");
    follower.join();
    EXPECT_THAT(textsOf(seen), ElementsAre("1 message now"));
}

}  // namespace
}  // namespace web
