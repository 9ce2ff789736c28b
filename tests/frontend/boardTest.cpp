#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Board, ShowsItsStatus) {
    CannedBoard board;
    EXPECT_EQ(board.run("board status"), done("shelf: 1\n"
                                              "profile mode: off\n"
                                              "clear-config: not in progress\n"
                                              "feature httpserver: on\n"
                                              "feature snmp: on\n"
                                              "entity network: started\n"));
    EXPECT_EQ(board.run("board status --json", Protocol::Udp), done(laidOut(R"({"shelfId": "1",
              "profileMode": false, "clearConfigInProgress": false,
              "features": [{"name": "httpserver", "on": true}, {"name": "snmp", "on": true}],
              "entities": [{"name": "network", "state": "started"}]})")));
}

TEST(Board, HandsOnAMessageAndPrintsTheReplyHarmlessly) {
    CannedBoard board;
    EXPECT_EQ(board.run("board message networkBle_severity 7"),
              done("networkBle_severity is now 7\nby \\x1b[31mnetwork\n"));
    EXPECT_EQ(board.run("board message --json a b"),
              done(laidOut(R"({"reply": "a is now b\nby \u001b[31mnetwork\n"})")));
    EXPECT_THAT(board.requests(), ElementsAre("message networkBle_severity 7", "message a b"));
}

TEST(Board, ChangesAndShowsWhatIsNow) {
    CannedBoard board;
    EXPECT_EQ(board.run("board shelf 2"), done("shelf: 2\n"));
    EXPECT_EQ(board.run("board feature httpserver off"), done("feature httpserver: off\n"));
    EXPECT_EQ(board.run("board profile on"), done("profile mode: on\n"));
    EXPECT_EQ(board.run("board clear-config start"), done("clear-config: in progress\n"));
    EXPECT_EQ(board.run("board clear-config finish -q"), done(""));
    EXPECT_EQ(board.run("board stop"), done("the board is stopping\n"));
    EXPECT_THAT(
        board.requests(),
        ElementsAre("shelf 2", "status", "feature httpserver off", "status", "profile on", "status",
                    "clear-config start", "status", "clear-config finish", "stop"));
}

TEST(Board, SendsNothingThatIsWrong) {
    CannedBoard board;
    EXPECT_EQ(board.run("board feature httpserver maybe"),
              wrongUsage("expected on or off, not 'maybe'"));
    EXPECT_EQ(board.run("board clear-config begin"),
              wrongUsage("expected start or finish, not 'begin'"));
    EXPECT_EQ(board.run("board message only-a-name").err,
              "mngctl: VALUE is required\nTry 'mngctl board message --help'.\n");
    EXPECT_EQ(board.run("board shelf " + std::string(9001, '1')),
              wrongUsage("the identity has at most 9000 bytes, this one has 9001"));
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Board, TellsWhyItRefuses) {
    const CannedBoard board({"--refuse"});
    const auto refused = [&](const std::string& line, const std::string& what) {
        EXPECT_EQ(board.run(line), refusedWith("the board refused to " + what + ": not now"));
    };
    refused("board shelf 2", "change the shelf's identity");
    refused("board feature x on", "switch the feature");
    refused("board profile off", "switch profile mode");
    refused("board clear-config finish", "finish the clear-configuration");
    refused("board message a b", "hand the message on");
    refused("board stop", "stop");
    refused("factory-defaults --yes", "return to factory settings");
}

TEST(FactoryDefaults, NeedConsent) {
    CannedBoard board;
    EXPECT_EQ(
        board.run("factory-defaults"),
        wrongUsage("factory-defaults asks for consent on a terminal; give --yes where there is "
                   "none"));
    const std::string question = "Return every entity of the board to factory settings? [y/N] ";
    for (const char* const no : {"", "\n", "n\n", "nay\n", "yy\n"}) {
        EXPECT_EQ(run(board.to({"factory-defaults"}), no, true),
                  (Outcome{Exit::Usage, question, "mngctl: nothing was changed\n"}));
    }
    EXPECT_THAT(board.requests(), IsEmpty());
    EXPECT_EQ(run(board.to({"factory-defaults"}), "y\n", true),
              done(question + "factory settings are in place\n"));
    EXPECT_EQ(board.run("factory-defaults --yes"), done("factory settings are in place\n"));
    EXPECT_EQ(board.run("factory-defaults --yes -q"), done(""));
    EXPECT_THAT(board.requests(), ElementsAre("defaults", "defaults", "defaults"));
}

}  // namespace
}  // namespace mngctl::test
