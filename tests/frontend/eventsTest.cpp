#include "eventServer.h"
#include "terminal.h"

namespace mngctl::test {
namespace {

using testing::HasSubstr;

const std::string restarted =
    "id: 1\nevent: events\ndata: {\ndata:   \"ietf-restconf:notification\": {\n"
    "data:     \"eventTime\": \"2024-03-01T10:20:30Z\",\n"
    "data:     \"VANTORIX-MSAN-MIB:RebootStatusIndication\": {\n"
    "data:       \"lastRestartCause\": \"power \x01on\"\ndata:     }\ndata:   }\ndata: }\n\n";

class Events : public testing::Test {
protected:
    Outcome follow(const EventServer& server, const std::string& options) const {
        return board.run("events --event-port " + server.port() + " --certificate " +
                         server.certificate() + " " + options);
    }

    std::string lost(const EventServer& server) const {
        return "mngctl: the event channel is lost: 127.0.0.1 port " + server.port() +
               " closed the connection; the web server set is off; 'mngctl web on' switches it "
               "on\n";
    }

    CannedBoard board;
};

TEST_F(Events, AreShownUntilTheChannelIsLost) {
    const EventServer server(EventServer::head() + restarted +
                             "data: two\ndata: lines\n\n: still here\n\n");
    EXPECT_EQ(follow(server, ""), (Outcome{Exit::NoAnswer,
                                           "2024-03-01T10:20:30Z  restarted: power \\x01on\n"
                                           "two\\nlines\n",
                                           lost(server)}));
}

TEST_F(Events, AreCountedAndWrittenAsJsonLines) {
    const EventServer server(EventServer::head() + restarted + "data: caf\xE9\n\n", true);
    EXPECT_EQ(
        follow(server, "--count 2 --json"),
        done(
            R"({"id":"1","name":"events","time":"2024-03-01T10:20:30Z","restartCause":"power \u0001on","text":"{\n  \"ietf-restconf:notification\": {\n    \"eventTime\": \"2024-03-01T10:20:30Z\",\n    \"VANTORIX-MSAN-MIB:RebootStatusIndication\": {\n      \"lastRestartCause\": \"power \u0001on\"\n    }\n  }\n}"})"
            "\n"
            R"({"id":"1","name":"message","time":null,"restartCause":null,"text":"caf\\xe9"})"
            "\n"));
    EXPECT_EQ(follow(server, "--count 1").out, "2024-03-01T10:20:30Z  restarted: power \\x01on\n");
}

TEST_F(Events, NeedAServerThatListens) {
    const EventServer server("");
    const Port closed(false);
    const std::string command =
        "events --certificate " + server.certificate() + " --event-port " + closed.number();
    const std::string nobody =
        "no event server listens at 127.0.0.1 port " + closed.number() + "; the web server set is ";
    EXPECT_EQ(board.run(command), noAnswer(nobody + "off; 'mngctl web on' switches it on"));
    board.run("web on --quiet");
    EXPECT_EQ(board.run(command),
              noAnswer(nobody + "on; 'mngctl web show' tells whether its ports answer"));
    board.end();
    const Outcome outcome = board.run(command);
    EXPECT_EQ(outcome.exit, Exit::NoAnswer);
    EXPECT_THAT(outcome.err, HasSubstr("whether the web server set is on could not be read"));
}

TEST_F(Events, NeedAnEventStream) {
    for (const std::string answer :
         {"HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnone",
          "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 6\r\n\r\n<html>",
          "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"}) {
        const EventServer server(answer);
        EXPECT_EQ(follow(server, ""), noAnswer("what answers at 127.0.0.1 port " + server.port() +
                                               " is no event server"));
    }
    const EventServer silent("");
    EXPECT_THAT(follow(silent, "").err, HasSubstr("cannot be followed: "));
    const EventServer chatter("220 mail.example\r\n");
    EXPECT_EQ(follow(chatter, "").exit, Exit::NoAnswer);
}

TEST_F(Events, NeedTheServersOwnCertificate) {
    const EventServer server(EventServer::head() + restarted);
    const EventServer other("");
    const std::string command = "events --event-port " + server.port() + " --certificate ";
    const Outcome outcome = board.run(command + other.certificate());
    EXPECT_EQ(outcome.exit, Exit::NoAnswer);
    EXPECT_THAT(outcome.err,
                HasSubstr("is not the one whose certificate is in " + other.certificate()));
    EXPECT_EQ(
        board.run(command + "/nowhere.crt"),
        wrongUsage("the event server's certificate /nowhere.crt cannot be read: No such file or "
                   "directory; --certificate names a copy"));
    EXPECT_EQ(board.run(command + "/dev/null"),
              wrongUsage("--certificate /dev/null: the file holds no certificate"));
}

TEST_F(Events, TakeNoStrangeOptions) {
    EXPECT_EQ(board.run("events now").exit, Exit::Usage);
    EXPECT_EQ(board.run("events --count 0").exit, Exit::Usage);
    EXPECT_EQ(board.run("events --event-port 99999").exit, Exit::Usage);
    const EventServer server("");
    EXPECT_EQ(test::run({"events", "--certificate", server.certificate(), "--host", "a/b"}),
              wrongUsage("--host a/b: this is no host name"));
}

TEST_F(Events, EndWithControlCOrReturnToThePrompt) {
    const EventServer server(EventServer::head() + restarted, true);
    const std::string command =
        "events --event-port " + server.port() + " --certificate " + server.certificate();
    Terminal alone(words(command), {});
    alone.waitFor("Ctrl-C ends it");
    alone.waitFor("restarted: power");
    alone.type("\x03");
    EXPECT_EQ(alone.exitCode(), 0);

    Terminal prompt({}, {{"HOME", "/nonexistent"}});
    prompt.waitFor("mngctl> ");
    prompt.type(command + "\r");
    prompt.waitFor("restarted: power");
    prompt.type("\x03");
    prompt.waitFor("mngctl> ");
    prompt.type("exit\r");
    EXPECT_EQ(prompt.exitCode(), 0);
}

}  // namespace
}  // namespace mngctl::test
