// The program as the RPC library's clients see it.

#include "wire/ServedTest.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>

namespace {

using Transport = Client::Transport;

class Calls : public ServedTest, public testing::WithParamInterface<Transport> {
protected:
    Client client{GetParam(), port(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(, Calls, testing::Values(Transport::udp, Transport::tcp),
                         [](const auto& test) {
                             return test.param == Transport::udp ? "Udp" : "Tcp";
                         });

TEST_P(Calls, AreAnswered) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        expectAnswer(client, call);
    }
    EXPECT_EQ(client.call(NULLPROC, {}, 0), RPC_SUCCESS);
    EXPECT_THAT(server.journal(), IsEmpty());
}

TEST_P(Calls, CarryTheStatusBack) {
    server.setStatus("networkSetIp", -5);
    expectAnswer(client, procedureCall(4), -5);
    server.setStatus("networkGetFtpState", 1006);
    expectAnswer(client, procedureCall(2), 1006);
    server.setStatus("networkSetIPv6Proto", -1);
    expectAnswer(client, procedureCall(96), -1);
    server.setStatus("networkGetOntMng", -1);
    expectAnswer(client, procedureCall(81), -1);
}

TEST_P(Calls, OfUnassignedProceduresAreRefused) {
    std::vector<unsigned int> unassigned = {255U, 0xffffffffU};
    for (unsigned int number = 1; number <= procedureCalls().back().number + 1; ++number) {
        if (std::ranges::find(procedureCalls(), number, &ProcedureCall::number) ==
            procedureCalls().end()) {
            unassigned.push_back(number);
        }
    }
    for (const unsigned int number : unassigned) {
        EXPECT_EQ(client.call(number, {1, 2, 3}, 0), RPC_PROCUNAVAIL) << number;
    }
    EXPECT_THAT(server.journal(), IsEmpty());
    expectAnswer(client, procedureCall(4));
}

TEST_P(Calls, OfOtherVersionsAreRefused) {
    for (const unsigned long version : {0UL, 2UL, 0xffffffffUL}) {
        Client other(GetParam(), port(GetParam()), 0x20000009, version);
        EXPECT_EQ(other.call(4, {1, 2}, 1), RPC_PROGVERSMISMATCH);
        EXPECT_EQ(other.error().re_vers.low, 1U);
        EXPECT_EQ(other.error().re_vers.high, 1U);
    }
    EXPECT_THAT(server.journal(), IsEmpty());
}

TEST_P(Calls, OfOtherProgramsAreRefused) {
    for (const unsigned long program : {0x20000008UL, 0x2000000aUL, 100000UL}) {
        Client other(GetParam(), port(GetParam()), program, 1);
        EXPECT_EQ(other.call(4, {1, 2}, 1), RPC_PROGUNAVAIL);
    }
    EXPECT_THAT(server.journal(), IsEmpty());
}

// More than a datagram holds, or a record.
TEST_P(Calls, WithTextsThatEndEarlyAreRefused) {
    for (const ProcedureCall& call : procedureCalls()) {
        if (!call.argument.hasText()) {
            continue;
        }
        Units argument = call.argument.units();
        argument[call.number == 65 ? 1 : 0] = 10000;
        EXPECT_EQ(client.call(call.number, argument, 0), RPC_CANTDECODEARGS)
            << testing::PrintToString(call);
    }
    EXPECT_THAT(server.journal(), IsEmpty());
    expectAnswer(client, procedureCall(14));
}

// Over UDP too, where the RPC library's buffer still holds what an earlier, longer datagram left.
TEST_P(Calls, WithLessThanTheirArgumentAreRefused) {
    for (const ProcedureCall& call : procedureCalls()) {
        Units argument = call.argument.units();
        expectAnswer(client, call);
        while (!argument.empty()) {
            argument.resize(argument.size() > 20 ? argument.size() / 2 : argument.size() - 1);
            EXPECT_EQ(client.call(call.number, argument, 0), RPC_CANTDECODEARGS)
                << testing::PrintToString(call) << " with " << argument.size() << " units";
        }
    }
    EXPECT_THAT(server.journal(), IsEmpty());
    expectAnswer(client, procedureCall(98));
}

TEST_P(Calls, OfManyClientsAreServedInTurn) {
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 20; ++i) {
        clients.push_back(std::make_unique<Client>(GetParam(), port(GetParam())));
    }
    for (int round = 0; round < 3; ++round) {
        for (const std::unique_ptr<Client>& each : clients) {
            expectAnswer(*each, procedureCall(14));
            expectAnswer(*each, procedureCall(69));
        }
    }
}

TEST_P(Calls, AreServedThroughSignals) {
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(kill(server.id(), SIGUSR1), 0);
        expectAnswer(client, procedureCall(4));
    }
    EXPECT_EQ(server.errorOutput(), printedAtStart());
}

class OverTcp : public ServedTest {
protected:
    Client client{Transport::tcp, port(Transport::tcp)};
};

TEST_F(OverTcp, ATextOf4MiBArrivesWhole) {
    std::string text(4 << 20, ' ');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char>('a' + i * 7 % 26 + i / 65536 % 2);
    }
    EXPECT_EQ(client.call(14, Argument().text(text).units(), 1), RPC_SUCCESS);
    const std::vector<std::string> entries = server.journal();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_TRUE(entries[0] == fmt::format("networkSetDomainname(\"{}\") -> 0", text));
    expectAnswer(client, procedureCall(14));
}

TEST_F(OverTcp, AnIdleServerStopsSoon) {
    expectAnswer(client, procedureCall(4));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(server.end(), 0);
    // It looks once a second; the rest is for busy machines.
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
    EXPECT_EQ(server.errorOutput(), printedAtStart() + printedAtStop());
}

}  // namespace
