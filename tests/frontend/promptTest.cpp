#include "mngctlRun.h"
#include "terminal.h"

#include <sys/stat.h>

#include <filesystem>

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Prompt : public testing::Test {
protected:
    std::vector<std::pair<std::string, std::string>> environment() const {
        return {{"TERM", "xterm"}, {"HOME", home.path()}, {"XDG_STATE_HOME", home / "state"}};
    }

    std::string history() const { return readFile(home / "state/mngctl/history"); }

    TemporaryDirectory home;
    CannedBoard board;
};

/// A terminal with the first prompt on it.
struct AtPrompt : Terminal {
    AtPrompt(const std::vector<std::string>& words,
             const std::vector<std::pair<std::string, std::string>>& variables)
        : Terminal(words, variables) {
        waitFor("mngctl> ");
    }
};

TEST_F(Prompt, CarriesOutCommandsUntilExit) {
    Terminal terminal(board.to({}), environment());
    terminal.waitFor("'help' shows the commands, Tab completes them, 'exit' leaves.");
    terminal.waitFor("mngctl> ");
    terminal.enter("dns set 192.0.2.1", "IPv4 servers: 192.0.2.1 (cli)\r\n");
    EXPECT_EQ(terminal.leave(), 0);
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_dns_servers {"primary":"192.0.2.1","secondary":"0.0.0.0"})",
                            "get_dns_serversws"));
}

TEST_F(Prompt, CompletesWithTab) {
    AtPrompt terminal(board.to({}), environment());
    terminal.enter("rp\tget_tel\t", "result: off\r\n");
    terminal.type("dns \t", "clear  set    show\r\n");
    terminal.waitFor("mngctl> dns ");
    terminal.enter("sh\t", "IPv6 servers: none (dhcp)\r\n");
    EXPECT_EQ(terminal.leave("\x04"), 0);
    EXPECT_THAT(board.requests(),
                ElementsAre("get_telnet", "get_dns_serversws", "get_ipv6dns_serversws"));
}

TEST_F(Prompt, GoesOnAfterAFailure) {
    AtPrompt terminal(board.to({}), environment());
    terminal.enter("dns set 1.2.3", "mngctl: expected an IPv4 address");
    terminal.enter("rpc 'open", "mngctl: the line ends after an open '");
    terminal.enter("rpc null", "answered\r\n");
    EXPECT_EQ(terminal.leave("quit\r"), 0);
}

TEST_F(Prompt, EditsCharactersInUtf8WhateverTheLocale) {
    auto plain = environment();
    plain.emplace_back("LC_ALL", "C");
    AtPrompt terminal(board.to({}), plain);
    // The backspace takes the whole character away.
    terminal.enter("rpc --dry-run set_domainname Zü€\x7frich", "value: Zürich\r\n");
    EXPECT_EQ(terminal.leave(), 0);
}

TEST_F(Prompt, DropsTheLineAtCtrlC) {
    AtPrompt terminal(board.to({}), environment());
    terminal.type("board stop", "stop");
    terminal.type("\x03", "^C");
    terminal.waitFor("mngctl> ");
    terminal.enter("rpc null", "answered\r\n");
    EXPECT_EQ(terminal.leave(), 0);
    EXPECT_THAT(board.requests(), ElementsAre("null"));
}

TEST_F(Prompt, AsksBeforeFactoryDefaults) {
    AtPrompt terminal(board.to({}), environment());
    terminal.type("factory-defaults\r", "[y/N] ");
    terminal.enter("n", "mngctl: nothing was changed");
    terminal.type("factory-defaults\r", "[y/N] ");
    terminal.enter("y", "factory settings are in place");
    EXPECT_EQ(terminal.leave(), 0);
    EXPECT_THAT(board.requests(), ElementsAre("defaults"));
}

TEST_F(Prompt, RemembersWhatWasTyped) {
    {
        AtPrompt terminal(board.to({}), environment());
        terminal.enter("rpc get_telnet", "result: off");
        EXPECT_EQ(terminal.leave(), 0);
    }
    EXPECT_THAT(history(), HasSubstr("get_telnet"));
    struct stat state{};
    ASSERT_EQ(::stat((home / "state/mngctl/history").c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat((home / "state/mngctl").c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0700U);

    AtPrompt terminal(board.to({}), environment());
    terminal.enter("\x10\x10", "result: off");  // Ctrl-P twice: past exit
    EXPECT_EQ(terminal.leave("\x04"), 0);
}

TEST_F(Prompt, DoesWithoutAHistoryThatCannotBeKept) {
    writeFile(home / "state", "x");  // a file where a directory should be made
    Terminal terminal(board.to({}), environment());
    EXPECT_THAT(terminal.waitFor("mngctl> "), Not(HasSubstr("mngctl:")));
    terminal.type("rpc null\r");
    EXPECT_THAT(terminal.waitFor("answered\r\n"), Not(HasSubstr("mngctl:")));
    EXPECT_EQ(terminal.leave(), 0);
}

TEST_F(Prompt, KeepsItsHistoryInTheHomeWithoutAStateDirectory) {
    {
        AtPrompt terminal(board.to({}),
                          {{"TERM", "xterm"}, {"HOME", home.path()}, {"XDG_STATE_HOME", ""}});
        EXPECT_EQ(terminal.leave(), 0);
    }
    EXPECT_TRUE(std::filesystem::exists(home / ".local/state/mngctl/history"));
}

TEST_F(Prompt, KeepsItsConnectionAndMakesItAgainAfterAFailure) {
    AtPrompt terminal(board.to({}), environment());
    terminal.enter("rpc null", "answered\r\n");
    board.end();
    terminal.enter("rpc null", "mngctl: nothing listens at 127.0.0.1 port");
    CannedBoard second({"--tcp-port", board.port()});
    terminal.enter("rpc null", "answered\r\n");
    EXPECT_EQ(terminal.leave(), 0);
    EXPECT_THAT(second.requests(), ElementsAre("null"));
}

}  // namespace
}  // namespace mngctl::test
