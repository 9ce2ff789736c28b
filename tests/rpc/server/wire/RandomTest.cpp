// Bytes that no client sends: the server answers what has a call's header, drops the rest, serves
// on, and keeps nothing of it all.

#include "wire/Connection.h"
#include "wire/ServedTest.h"

#include <algorithm>
#include <random>

namespace {

using Transport = Client::Transport;

// A sanitizer takes long, most of all to hand out the memory that the length of a text asks for.
#ifdef SANITIZED
constexpr int rounds = 300;
constexpr std::uint32_t highest = 0xfffff;
#else
constexpr int rounds = 3000;
constexpr std::uint32_t highest = 0xffffffff;
#endif

std::vector<char> operator+(std::vector<char> left, const std::vector<char>& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const ProcedureCall* findCall(std::uint32_t number) {
    const auto call = std::ranges::find(procedureCalls(), number, &ProcedureCall::number);
    return call == procedureCalls().end() ? nullptr : &*call;
}

/// What is sent in one round, from a seed.
class Noise {
public:
    explicit Noise(unsigned int seed) : generator(seed) {}

    std::uint32_t below(std::uint32_t limit) {
        return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(generator);
    }

    std::uint32_t number() {
        return std::uniform_int_distribution<std::uint32_t>(0, highest)(generator);
    }

    std::vector<char> bytes(std::uint32_t most) {
        const std::uint32_t size = below(most + 1);
        Units units(size / 4 + 1);
        std::ranges::generate(units, [this] { return number(); });
        std::vector<char> made = toBytes(units);
        made.resize(size);
        return made;
    }

    std::uint32_t procedure() { return below(20) == 0 ? number() : below(110); }

    /// A body for a procedure's argument: noise, small numbers, which may be lengths of texts, or
    /// the argument with a few units spoilt.
    std::vector<char> body(std::uint32_t procedure) {
        const ProcedureCall* const call = findCall(procedure);
        switch (below(3)) {
            case 0:
                return bytes(600);
            case 1: {
                Units units(below(100));
                std::ranges::generate(units, [this] { return below(12); });
                return toBytes(units) + bytes(5);
            }
            default:
                return call != nullptr ? toBytes(spoilt(call->argument.units())) : bytes(5000);
        }
    }

    /// The units, of which a few are others, or missing.
    Units spoilt(Units units) {
        for (std::uint32_t count = below(4); count > 0 && !units.empty(); --count) {
            std::uint32_t& unit = units[below(static_cast<std::uint32_t>(units.size()))];
            unit = below(2) == 0 ? number() : below(300);
        }
        if (below(4) == 0) {
            units.resize(below(static_cast<std::uint32_t>(units.size()) + 1));
        }
        return units;
    }

private:
    std::mt19937 generator;
};

/// The reply to a call with a sound header: RFC 5531 leaves three outcomes.
void expectReply(const std::vector<char>& reply, std::uint32_t id, std::uint32_t procedure) {
    const Units units = toUnits(reply);
    ASSERT_GE(units.size(), 6U);
    EXPECT_EQ(Units(units.begin(), units.begin() + 5), (Units{id, REPLY, MSG_ACCEPTED, 0, 0}));
    const std::uint32_t status = units[5];
    const ProcedureCall* const call = findCall(procedure);
    std::size_t resultSize = 0;
    if (procedure == NULLPROC) {
        EXPECT_EQ(status, SUCCESS);
    } else if (call == nullptr) {
        EXPECT_EQ(status, PROC_UNAVAIL);
    } else if (call->argument.units().empty()) {
        EXPECT_EQ(status, SUCCESS);
    } else {
        EXPECT_THAT(status, testing::AnyOf(SUCCESS, GARBAGE_ARGS));
    }
    if (call != nullptr && status == SUCCESS) {
        resultSize = call->result({{1}, 0, true}).size();
    }
    EXPECT_EQ(units.size(), 6 + resultSize);
}

class Random : public ServedTest {
protected:
    /// Does something twice, with different seeds, and expects the second time to leave nothing
    /// behind. The server serves on.
    void expectNothingKept(const std::function<void(Noise&)>& work) {
        Noise first(1);
        work(first);
        settle();
        const std::size_t descriptors = server.openDescriptors();
        [[maybe_unused]] const std::size_t heap = server.memoryInUse();
        [[maybe_unused]] const std::size_t resident = server.residentMemory();
        Noise second(2);
        work(second);
        settle();
        EXPECT_EQ(server.openDescriptors(), descriptors);
#ifndef SANITIZED
        // Less than the least piece of memory for every thirtieth round.
        EXPECT_LE(server.memoryInUse(), heap + rounds);
        EXPECT_LE(server.residentMemory(), resident + (16 << 20));
#endif
        Client udp(Transport::udp, port(Transport::udp));
        expectAnswer(udp, procedureCall(4));
        Client tcp(Transport::tcp, port(Transport::tcp));
        expectAnswer(tcp, procedureCall(98));
    }

    /// Waits until the server has dealt with everything sent, and takes what it wrote down.
    void settle() {
        {
            // It accepts connections in their order, one in a pass of its loop.
            Client last(Transport::tcp, port(Transport::tcp));
            EXPECT_EQ(last.call(NULLPROC, {}, 0), RPC_SUCCESS);
        }
        // One more pass for each of: a call, a call behind it, the end of a connection.
        for (int pass = 0; pass < 5; ++pass) {
            EXPECT_EQ(null.call(NULLPROC, {}, 0), RPC_SUCCESS);
        }
        server.journal();
    }

    Client null{Transport::udp, port(Transport::udp)};
};

TEST_F(Random, DatagramsAreDropped) {
    expectNothingKept([this](Noise& noise) {
        const Connection connection(Transport::udp, server.udpPort());
        for (int round = 0; round < rounds; ++round) {
            connection.send(noise.bytes(noise.below(10) == 0 ? 9000 : 100));
            if (round % 8 == 7) {  // as many as the socket's buffer holds
                ASSERT_EQ(null.call(NULLPROC, {}, 0), RPC_SUCCESS);
                connection.drain();
            }
        }
    });
}

TEST_F(Random, HeadersAreAnsweredOrDropped) {
    expectNothingKept([this](Noise& noise) {
        const Connection connection(Transport::udp, server.udpPort());
        for (int round = 0; round < rounds; ++round) {
            const std::uint32_t procedure = noise.procedure();
            connection.send(toBytes(noise.spoilt(callHeader(1, procedure))) +
                            noise.body(procedure));
            if (round % 8 == 7) {
                ASSERT_EQ(null.call(NULLPROC, {}, 0), RPC_SUCCESS);
                connection.drain();
                server.journal();
            }
        }
    });
}

TEST_F(Random, ArgumentsInDatagramsAreAnswered) {
    expectNothingKept([this](Noise& noise) {
        const Connection connection(Transport::udp, server.udpPort());
        for (std::uint32_t id = 1; id <= rounds; ++id) {
            const std::uint32_t procedure = noise.procedure();
            connection.send(toBytes(callHeader(id, procedure)) + noise.body(procedure));
            const auto reply = connection.receive();
            ASSERT_TRUE(reply);
            expectReply(*reply, id, procedure);
            if (id % 100 == 0) {
                server.journal();
            }
            ASSERT_FALSE(HasFailure()) << "procedure " << procedure << ", call " << id;
        }
    });
}

TEST_F(Random, ArgumentsInRecordsAreAnswered) {
    expectNothingKept([this](Noise& noise) {
        std::optional<Connection> connection;
        for (std::uint32_t id = 1; id <= rounds; ++id) {
            if (id % 100 == 1) {
                connection.emplace(Transport::tcp, server.tcpPort());
                server.journal();
            }
            const std::uint32_t procedure = noise.procedure();
            ASSERT_TRUE(connection->send(
                record(toBytes(callHeader(id, procedure)) + noise.body(procedure))));
            const auto reply = connection->receive();
            ASSERT_TRUE(reply);
            expectReply(*reply, id, procedure);
            ASSERT_FALSE(HasFailure()) << "procedure " << procedure << ", call " << id;
        }
    });
}

TEST_F(Random, RecordsEndTheirConnection) {
    expectNothingKept([this](Noise& noise) {
        for (int round = 0; round < rounds / 2; ++round) {
            const Connection connection(Transport::tcp, server.tcpPort());
            connection.send(record(noise.bytes(500)));
            connection.finish();
        }
    });
}

TEST_F(Random, StreamsEndTheirConnection) {
    expectNothingKept([this](Noise& noise) {
        for (int round = 0; round < rounds / 2; ++round) {
            const Connection connection(Transport::tcp, server.tcpPort());
            connection.send(noise.bytes(500));
            connection.finish();
        }
    });
}

TEST_F(Random, ClientsThatDoNotAwaitTheirRepliesAreForgotten) {
    expectNothingKept([this](Noise& noise) {
        for (std::uint32_t round = 0; round < rounds / 2; ++round) {
            const Connection connection(Transport::tcp, server.tcpPort());
            const std::uint32_t procedure = noise.procedure();
            for (int call = 0; call < 3; ++call) {
                connection.send(record(toBytes(callHeader(1, procedure)) + noise.body(procedure)));
            }
            if (round % 100 == 0) {
                settle();
            }
        }
    });
}

}  // namespace
