#include "board/process/Command.h"
#include "support/matchers.h"

#include <stdexcept>

namespace {

using process::outputOf;
using std::chrono::milliseconds;
using std::chrono::seconds;

std::string failureOf(const std::vector<std::string>& command, milliseconds limit) {
    try {
        return "output " + outputOf(command, limit);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(Command, GivesItsOutput) {
    EXPECT_EQ(outputOf({"sh", "-c", "echo one; echo two >&2; cat"}, seconds(20)), "one\ntwo\n");
}

TEST(Command, ThatFailsIsToldWithItsLastWords) {
    EXPECT_EQ(failureOf({"sh", "-c", "echo one; echo two; exit 3"}, seconds(20)),
              "sh has ended with status 3: two");
    EXPECT_EQ(failureOf({"sh", "-c", "kill -9 $$"}, seconds(20)), "sh has ended with signal 9");
    EXPECT_THAT(failureOf({"/no/such/program"}, seconds(20)),
                HasSubstr("cannot run /no/such/program"));
}

TEST(Command, ThatTakesTooLongIsEnded) {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(failureOf({"sleep", "60"}, milliseconds(100)), "sleep does not end in time");
    EXPECT_EQ(failureOf({"sh", "-c", "exec >&- 2>&-; exec sleep 60"}, milliseconds(100)),
              "sh does not end in time");
    EXPECT_LT(std::chrono::steady_clock::now() - before, seconds(20));
}

TEST(Command, ThatWritesTooMuchIsEnded) {
    EXPECT_EQ(failureOf({"yes"}, seconds(20)), "yes writes too much");
}

}  // namespace
