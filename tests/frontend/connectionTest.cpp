#include "mngctl/outcome.h"
#include "mngctl/rpc/client.h"
#include "mngctlRun.h"

#include <memory>

namespace mngctl::test {
namespace {

using testing::ElementsAre;

class Connection : public testing::TestWithParam<Protocol> {
protected:
    Settings settingsFor(const CannedBoard& board) const {
        Settings settings;
        settings.protocol = GetParam();
        settings.port = settings.controlPort =
            static_cast<std::uint16_t>(std::stoi(board.port(GetParam())));
        settings.timeout = std::chrono::seconds(10);
        return settings;
    }
    static std::string portOption() {
        return GetParam() == Protocol::Tcp ? "--tcp-port" : "--udp-port";
    }
};

INSTANTIATE_TEST_SUITE_P(Over, Connection, bothProtocols, nameOfProtocol);

TEST_P(Connection, IsMadeAgainAfterTheBoardStartedAnew) {
    auto first = std::make_unique<CannedBoard>();
    const std::string port = first->port(GetParam());
    Client client;
    client.configure(settingsFor(*first));
    client.ping(networkProgram);
    EXPECT_THAT(first->requests(), ElementsAre("null"));
    first.reset();

    CannedBoard second({portOption(), port});
    client.ping(networkProgram);
    EXPECT_THAT(second.requests(), ElementsAre("null"));
}

TEST_P(Connection, FailsWhileTheBoardIsAwayAndThenWorks) {
    auto first = std::make_unique<CannedBoard>();
    const std::string port = first->port(GetParam());
    Client client;
    client.configure(settingsFor(*first));
    client.ping(networkProgram);
    first.reset();
    EXPECT_THROW(client.ping(networkProgram), NoAnswer);
    EXPECT_THROW(client.ping(networkProgram), NoAnswer);

    CannedBoard second({portOption(), port});
    client.ping(networkProgram);
    EXPECT_THAT(second.requests(), ElementsAre("null"));
}

TEST_P(Connection, LeadsToAnotherBoardWhenTheSettingsDo) {
    CannedBoard first;
    CannedBoard second;
    Client client;
    client.configure(settingsFor(first));
    client.ping(networkProgram);
    client.configure(settingsFor(second));
    client.ping(networkProgram);
    EXPECT_THAT(first.requests(), ElementsAre("null"));
    EXPECT_THAT(second.requests(), ElementsAre("null"));
}

TEST_P(Connection, ServesBothProgramsAndManyCalls) {
    CannedBoard board;
    Client client;
    client.configure(settingsFor(board));
    for (int i = 0; i < 50; ++i) {
        client.ping(networkProgram);
        client.ping(controlProgram);
    }
    EXPECT_EQ(board.requests().size(), 50U);  // the control program tells of no null call
}

}  // namespace
}  // namespace mngctl::test
