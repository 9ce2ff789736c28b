#include "eventServer.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The web server set of a canned board, with one port that answers and one that does not.
class Web : public testing::Test {
protected:
    std::string withPorts(const std::string& command) const {
        return command + " --web-port " + web.number() + " --event-port " + events.number();
    }

    std::string lines(const std::string& on) const {
        return "web server set: " + on + "\nweb server: answers at port " + web.number() +
               "\nevent server: no answer at port " + events.number() + "\n";
    }

    const Port web{true};
    const Port events{false};
    CannedBoard board;
};

TEST_F(Web, IsShown) {
    EXPECT_EQ(board.run(withPorts("web show")), done(lines("off")));
    EXPECT_EQ(board.run(withPorts("web show --json")),
              done(laidOut(R"({"on": false, "webServer": {"port": )" + web.number() +
                           R"(, "answers": true}, "eventServer": {"port": )" + events.number() +
                           R"(, "answers": false}})")));
}

TEST_F(Web, IsSwitchedAndReadBack) {
    EXPECT_EQ(board.run(withPorts("web on")), done(lines("on")));
    EXPECT_EQ(board.run(withPorts("web off")), done(lines("off")));
    EXPECT_EQ(board.run("web on --quiet"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre(HasSubstr("http_server_set"), "http_get", HasSubstr("http_server_set"),
                            "http_get", HasSubstr("http_server_set")));
}

TEST_F(Web, DoesNotExpectMore) {
    EXPECT_EQ(board.run("web on now").exit, Exit::Usage);
    EXPECT_EQ(board.run("web").exit, Exit::Usage);
    EXPECT_EQ(board.run("web show --event-port 0").exit, Exit::Usage);
    EXPECT_EQ(board.run("web show --web-port 65536").exit, Exit::Usage);
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST_F(Web, ARefusalTellsWhatIsThere) {
    const CannedBoard refusing({"--refuse"});
    EXPECT_EQ(
        refusing.run(withPorts("web on")),
        refusedWith("the board refused to switch the web server set on: result -1 (failed); now "
                    "in force: the web server set counts as off, the event server does not "
                    "answer at port " +
                    events.number() + ", the web server answers at port " + web.number()));
}

}  // namespace
}  // namespace mngctl::test
