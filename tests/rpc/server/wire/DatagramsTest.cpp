// Datagrams that end early. The RPC library decodes from a buffer in which the rest of an earlier
// datagram still stands; nothing of that may become part of a call.

#include "wire/Connection.h"
#include "wire/ServedTest.h"

namespace {

/// What the RPC library takes for a datagram at all.
constexpr std::size_t leastDatagram = 16;

/// Where in a call's header the number of the procedure ends.
constexpr std::size_t procedureEnd = 24;

class Datagrams : public ServedTest {
protected:
    /// Sends a datagram and returns the state of the reply to it.
    std::uint32_t stateAfter(std::span<const char> datagram, std::uint32_t id) const {
        connection.send(datagram);
        const auto reply = connection.receive();
        const Units units = reply ? toUnits(*reply) : Units{};
        if (units.size() < 6 || units[0] != id) {
            ADD_FAILURE() << "not the reply to call " << id;
            return ~0U;
        }
        return units[5];
    }

    Connection connection{Client::Transport::udp, server.udpPort()};
};

class ShortDatagrams : public Datagrams, public testing::WithParamInterface<unsigned int> {};

// Without argument, with numbers, a text, a text and a number, two texts.
INSTANTIATE_TEST_SUITE_P(, ShortDatagrams, testing::Values(29U, 28U, 14U, 70U, 93U),
                         [](const auto& test) {
                             return std::string(procedureCall(test.param).procedure);
                         });

// The full one goes before each, so that the very bytes that are missing stand in the buffer.
TEST_P(ShortDatagrams, AreRefusedRightAfterAFullOne) {
    const ProcedureCall& call = procedureCall(GetParam());
    Units units = callHeader(1, call.number);
    const Units argument = call.argument.units();
    units.insert(units.end(), argument.begin(), argument.end());
    const std::vector<char> whole = toBytes(units);
    for (std::size_t size = leastDatagram; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        ASSERT_EQ(stateAfter(whole, 1), SUCCESS);
        ASSERT_THAT(server.journal(), ElementsAre(call.exportedCall + " -> 0"));
        const std::uint32_t state = stateAfter({whole.data(), size}, 1);
        // Without a whole number it is another procedure: the buffer holds the reply as well.
        if (size >= procedureEnd) {
            ASSERT_EQ(state, GARBAGE_ARGS);
        }
        ASSERT_THAT(server.journal(), IsEmpty());
    }
    EXPECT_EQ(stateAfter(whole, 1), SUCCESS);
    EXPECT_THAT(server.journal(), ElementsAre(call.exportedCall + " -> 0"));
}

// The text would be complete, but not by its own datagram.
TEST_F(Datagrams, TakeNoTextFromAnotherCall) {
    const auto callWith = [](std::uint32_t id, const Argument& argument) {
        Units units = callHeader(id, 14);
        units.insert(units.end(), argument.units().begin(), argument.units().end());
        return toBytes(units);
    };
    ASSERT_EQ(stateAfter(callWith(1, Argument().text("secret.example.org")), 1), SUCCESS);
    ASSERT_THAT(server.journal(),
                ElementsAre(R"(networkSetDomainname("secret.example.org") -> 0)"));
    std::vector<char> cut = callWith(2, Argument().text("public.example.org"));
    cut.resize(cut.size() - 14);
    EXPECT_EQ(stateAfter(cut, 2), GARBAGE_ARGS);
    EXPECT_THAT(server.journal(), IsEmpty());
}

}  // namespace
