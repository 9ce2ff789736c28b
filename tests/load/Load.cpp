// The library as it ships, in a process of its own: what it does when it is loaded and when the
// process ends, what it asks of its host, and what it offers.

#include "load/symbolLists.h"
#include "support/privateNamespaces.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// A library that is loaded says so on a message queue of the system's: on one of this process's
/// and its children's, which goes with them.
class PrivateQueues : public testing::Environment {
public:
    void SetUp() override { enterPrivateNamespaces(CLONE_NEWIPC); }
};

testing::Environment* const environment = testing::AddGlobalTestEnvironment(new PrivateQueues);

struct Output {
    std::vector<std::string> lines;
    int status;
};

Output run(const std::string& command) {
    Output output{{}, -1};
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << command;
        return output;
    }
    std::string text;
    for (int character; (character = std::fgetc(pipe)) != EOF;) {
        text += static_cast<char>(character);
    }
    const int status = pclose(pipe);
    output.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        output.lines.push_back(line);
    }
    return output;
}

TEST(Load, BringsUpTheEntityAndRegistersItAndEndsInReverse) {
    const Output output = run(PROBE " " LIBRARY);
    EXPECT_EQ(output.status, 0);
    EXPECT_THAT(
        output.lines,
        ElementsAre("load: BLLManager()", R"(load: BLEntity("network"))",
                    R"(load: ACLContainer_t("br0", "acl"))", "load: varoGetMyBoardPos() -> 0 5",
                    "load: varoLibInit() -> 0", "load: varoGetInternalConfig() -> 0 {severity=3}",
                    R"(load: registerEntity("network"))", "networkDeleteDnsServers() = 0",
                    "call: exclusiveLock",
                    R"(call: varoGetDnsWS(2) -> 0 2 {domain="" pri=0.0.0.0 sec=0.0.0.0})",
                    R"(call: varoUpdateDnsWS(2, {domain="" pri=0.0.0.0 sec=0.0.0.0}) -> 0)",
                    "call: ~exclusiveLock", "exit: varoLibDestroy()",
                    R"(exit: ~ACLContainer_t("br0", "acl"))", R"(exit: ~BLEntity("network"))",
                    "exit: ~BLLManager()"));
}

TEST(Load, AnExportedCallBeforeTheStartUpCodeMakesTheEntity) {
    const Output output = run(EARLY_CALL);
    EXPECT_EQ(output.status, 0);
    EXPECT_THAT(
        output.lines,
        ElementsAre("-1", R"(BLEntity("network"))", R"(ACLContainer_t("br0", "acl"))",
                    "varoGetMyBoardPos() -> 0 5", "varoLibInit() -> 0",
                    "varoGetInternalConfig() -> 0 {severity=3}", "networkSetHostname() returned",
                    "BLLManager()", R"(registerEntity("network"))"));
}

/// The next text on the queue of the network's events; empty when there is none.
std::string nextEvent() {
    struct {
        long type;
        char text[2000];
    } message{};
    const int queue = msgget(1708033, 0);
    return msgrcv(queue, &message, sizeof message.text, 1001, IPC_NOWAIT) < 0 ? "" : message.text;
}

TEST(Load, TellsTheWebManagerOfTheRestart) {
    for (const std::string command : {PROBE " " LIBRARY, EARLY_CALL}) {
        while (!nextEvent().empty()) {
        }
        EXPECT_EQ(run(command).status, 0);
        const std::string event = nextEvent();
        EXPECT_THAT(event, StartsWith("events={\n  \"ietf-restconf:notification\": {\n"));
        EXPECT_THAT(event, EndsWith("\"\n    }\n  }\n}"));
        EXPECT_EQ(nextEvent(), "");
    }
}

#ifdef CHECK_SYMBOLS

/// Names of symbols that nm prints with one of the given types.
std::vector<std::string> symbols(const std::string& options, const std::string& types) {
    const Output output = run("nm -D --demangle " + options + " " LIBRARY);
    EXPECT_EQ(output.status, 0);
    const std::regex form("^[0-9a-f ]*([A-Za-z]) (.*)$");
    std::vector<std::string> names;
    for (const std::string& line : output.lines) {
        std::smatch match;
        if (std::regex_match(line, match, form) &&
            types.find(match[1].str()) != std::string::npos) {
            names.push_back(match[2]);
        }
    }
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

// Names with a version come from the C, C++ and RPC libraries, and Boost's come from Boost: what is
// left is what the host supplies.
TEST(Symbols, AskedOfTheHostAreThoseListed) {
    std::vector<std::string> names = symbols("--undefined-only", "U");
    std::erase_if(names, [](const std::string& name) {
        return name.find('@') != std::string::npos || name.find("boost::") != std::string::npos;
    });
    EXPECT_THAT(names, ElementsAreArray(listedSymbols("imports.txt")));
}

// Weak symbols are instantiations of templates, which are the compiler's business.
TEST(Symbols, OfferedAreThoseListed) {
    EXPECT_THAT(symbols("--defined-only", "TDBRS"), ElementsAreArray(listedSymbols("exports.txt")));
}

// In front of the slots stand the offset to the top and the type information.
TEST(Symbols, VirtualTableOfTheEntityHas89Slots) {
    const Output output = run("nm -D -S --demangle --defined-only " LIBRARY);
    const auto table = std::ranges::find_if(output.lines, [](const std::string& line) {
        return line.ends_with(" vtable for Network");
    });
    ASSERT_NE(table, output.lines.end());
    const std::size_t size = std::stoul(table->substr(table->find(' ')), nullptr, 16);
    EXPECT_EQ(size, (2 + 89) * sizeof(void*));
}

TEST(Symbols, CallTheFortifiedSystemLogAndTheGuardedCopy) {
    const std::vector<std::string> names = symbols("--undefined-only", "U");
    EXPECT_THAT(names, Contains(StartsWith("__vsyslog_chk@")));
    EXPECT_THAT(names, Contains(StartsWith("__strcpy_chk@")));
    EXPECT_THAT(names, Not(Contains(StartsWith("vsyslog@"))));
    EXPECT_THAT(names, Not(Contains(StartsWith("strcpy@"))));
}

#endif

}  // namespace
