#include "wire/ServedTest.h"

#include <fmt/core.h>

void ServedTest::TearDown() {
    EXPECT_EQ(server.end(), 0) << server.errorOutput();
    EXPECT_THAT(server.errorOutput(), StartsWith(printedAtStart()));
    EXPECT_THAT(server.errorOutput(), EndsWith(printedAtStop()));
}

void ServedTest::expectAnswer(Client& client, const ProcedureCall& call, int status) {
    const Units expected = call.result({{1}, status, true});
    EXPECT_EQ(client.call(call.number, call.argument.units(), expected.size()), RPC_SUCCESS);
    EXPECT_EQ(difference(expected, client.result()), "");
    if (call.filling == Filling::none) {
        EXPECT_THAT(server.journal(), IsEmpty());
    } else {
        EXPECT_THAT(server.journal(),
                    ElementsAre(fmt::format("{} -> {}", call.exportedCall, status)));
    }
}

std::string ServedTest::printedAtStart() const {
    return fmt::format("[{}] BLLManager_mng: Starting main RPC loop - custom made.\n", server.id());
}

std::string ServedTest::printedAtStop() const {
    return fmt::format("[{}] BLLManager_mng: RPC main loop stopping.\n", server.id());
}
