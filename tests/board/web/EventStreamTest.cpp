#include "board/web/eventStream.h"
#include "support/matchers.h"

namespace web {
namespace {

TEST(EventStream, CarriesNumberNameAndText) {
    EXPECT_EQ(toEventStream({7, "events", "hello"}), "id: 7\nevent: events\ndata: hello\n\n");
}

TEST(EventStream, SplitsTextsAtLineEnds) {
    EXPECT_EQ(toEventStream({1, "events", "{\n  \"a\"\n}"}),
              "id: 1\nevent: events\ndata: {\ndata:   \"a\"\ndata: }\n\n");
}

TEST(EventStream, LetsNoControlCharacterEndAnEvent) {
    EXPECT_EQ(toEventStream({1, "events", "a\r\rid: 9\x01z"}),
              "id: 1\nevent: events\ndata: a  id: 9 z\n\n");
}

TEST(EventStream, ReadsTheRequest) {
    const Request request =
        parseRequest("GET /sse-event?x=1 HTTP/1.1\r\nHost: board\r\nLast-Event-ID: 42\r\n\r\n");
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path, "/sse-event");
    EXPECT_EQ(request.lastEventId, 42U);
}

TEST(EventStream, SurvivesWhatIsNoRequest) {
    EXPECT_EQ(parseRequest("").method, "");
    EXPECT_EQ(parseRequest("\r\n\r\n").path, "");
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\r\nlast-event-id: none\r\n\r\n").lastEventId, 0U);
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\r\nlast-event-id:\r\n\r\n").lastEventId, 0U);
}

}  // namespace
}  // namespace web
