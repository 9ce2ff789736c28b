// Arguments: what does not decode, texts of all lengths, and what becomes of the memory.

#include "network/rpc/networkProgram.h"
#include "program/ProgramTest.h"

#include <malloc.h>

namespace {

std::vector<ProcedureCall> callsWith(bool (*property)(const ProcedureCall&)) {
    std::vector<ProcedureCall> found;
    std::ranges::copy_if(procedureCalls(), std::back_inserter(found), property);
    return found;
}

bool hasArgument(const ProcedureCall& call) { return !call.argument.units().empty(); }
bool hasText(const ProcedureCall& call) { return call.argument.hasText(); }

/// Bytes in use of the heap.
std::size_t bytesInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

class Arguments : public ProgramTest {
protected:
    /// Has the program serve a call whose argument ends early, or is spoilt otherwise.
    void expectRefusal(unsigned int procedure, std::vector<char> argument) {
        FakeTransport transport(std::move(argument));
        serve(procedure, transport);
        EXPECT_THAT(transport.events(), ElementsAre("getargs", "reply GARBAGE_ARGS"));
        EXPECT_THAT(journal(), IsEmpty());
    }

    /// Whatever is done leaves the heap as it was, the first time apart.
    static void expectNoGrowth(const std::function<void()>& work) {
        work();
        const std::size_t before = bytesInUse();
        for (int round = 0; round < 50; ++round) {
            work();
        }
        EXPECT_EQ(bytesInUse(), before);
    }
};

TEST_F(Arguments, TheLargestTakes1080Bytes) { EXPECT_EQ(networkRpcArgumentSize, 1080U); }

class TruncatedArgument : public Arguments, public testing::WithParamInterface<ProcedureCall> {};

INSTANTIATE_TEST_SUITE_P(, TruncatedArgument, testing::ValuesIn(callsWith(hasArgument)), testName);

// Wherever it ends: the function is not called, and nothing of the argument is left to release.
TEST_P(TruncatedArgument, IsRefused) {
    const std::vector<char> whole = toBytes(GetParam().argument.units());
    const std::size_t step = whole.size() > 200 ? 4 : 1;
    for (std::size_t length = 0; length < whole.size(); length += step) {
        SCOPED_TRACE(length);
        expectRefusal(GetParam().number,
                      {whole.begin(), whole.begin() + static_cast<long>(length)});
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(Arguments, WithTextsLeaveNoMemoryBehindWhenTheyAreRefused) {
    const auto refuseAll = [] {
        for (const ProcedureCall& call : callsWith(hasText)) {
            const std::vector<char> whole = toBytes(call.argument.units());
            for (std::size_t length = 0; length < whole.size(); length += 4) {
                FakeTransport transport(
                    std::vector<char>(whole.begin(), whole.begin() + static_cast<long>(length)));
                serve(call.number, transport);
            }
        }
    };
    expectNoGrowth(refuseAll);
}

TEST_F(Arguments, WithTextsLeaveNoMemoryBehindWhenTheyAreServed) {
    expectNoGrowth([this] {
        for (const ProcedureCall& call : callsWith(hasText)) {
            serve(call);
        }
        journal();
    });
}

// A length that leaves no room for the terminator, or that the text does not have.
TEST_F(Arguments, WithTextsOfALengthThatIsNoneAreRefused) {
    for (const ProcedureCall& call : callsWith(hasText)) {
        Units units = call.argument.units();
        // The first text's length is the first unit but for the zone, whose offset goes before.
        const std::size_t place = call.number == 65 ? 1 : 0;
        for (const std::uint32_t length : {0xffffffffU, 10000U}) {
            SCOPED_TRACE(testing::PrintToString(call) + " of " + std::to_string(length));
            units[place] = length;
            expectRefusal(call.number, toBytes(units));
        }
    }
}

// The RPC library may say that it lacks the memory. A sanitizer takes long to hand it out.
#ifdef SANITIZED
constexpr std::uint32_t largeLengths[] = {0x7fffffff};
#else
constexpr std::uint32_t largeLengths[] = {0xfffffffe, 0x80000000, 0x7fffffff};
#endif

TEST_F(Arguments, WithTextsAsLargeAsTheMachinesMemoryAreRefused) {
    for (const std::uint32_t length : largeLengths) {
        SCOPED_TRACE(length);
        testing::internal::CaptureStderr();
        expectRefusal(14, toBytes({length, 0x61626364}));
        testing::internal::GetCapturedStderr();
    }
}

TEST_F(Arguments, TextsOfAnyLengthArriveWhole) {
    const std::pair<unsigned int, const char*> procedures[] = {
        {14, "networkSetDomainname"}, {16, "networkSetHostname"},
        {23, "networkSetTimeInfo"},   {26, "networkSetTimezoneName"},
        {71, "networkSetIpv6Gw"},     {95, "networkSetIPv6Domainname"}};
    for (const auto& [number, function] : procedures) {
        for (const std::size_t length : {0U, 1U, 2U, 3U, 4U, 5U, 100000U}) {
            const std::string text(length, 'x');
            FakeTransport transport(Argument().text(text).units());
            serve(number, transport);
            EXPECT_THAT(transport.events(), servedCall());
            EXPECT_THAT(journal(), ElementsAre(std::string(function) + "(\"" + text + "\") -> 0"));
        }
    }
}

TEST_F(Arguments, TextsWithinRecordsArriveWhole) {
    for (const std::size_t length : {0U, 1U, 100000U}) {
        const std::string text(length, 'x');
        const std::string quoted = "\"" + text + "\"";
        const std::tuple<unsigned int, Argument, std::string> calls[] = {
            {42, Argument().text(text).number(2).number(1),
             "networkSnmptrapAdd(" + quoted + ", 2, 1) -> 0"},
            {44, Argument().text(text).number(2).number(3),
             "networkSnmptrapChange(" + quoted + ", 2, 3) -> 0"},
            {47, Argument().text(text).number(2).number(1),
             "networkSnmpCommunityAdd(" + quoted + ", 2, 1) -> 0"},
            {48, Argument().text(text).number(2),
             "networkSnmpCommunityChange(" + quoted + ", 2) -> 0"},
            {50, Argument().text(text).number(2),
             "networkSnmpSystemChange(" + quoted + ", 2) -> 0"},
            {65, Argument().number(2).text(text), "networkSetSntpTimezone(2, " + quoted + ") -> 0"},
            {70, Argument().text(text).number(2), "networkSetIpv6Addr(" + quoted + ", 2) -> 0"},
            {93, Argument().text(text).text("y"),
             "networkSetIPv6DnsServers(" + quoted + ", \"y\") -> 0"},
            {93, Argument().text("y").text(text),
             "networkSetIPv6DnsServers(\"y\", " + quoted + ") -> 0"}};
        for (const auto& [number, argument, entry] : calls) {
            FakeTransport transport(argument.units());
            serve(number, transport);
            EXPECT_THAT(transport.events(), servedCall());
            EXPECT_THAT(journal(), ElementsAre(entry));
        }
    }
}

// Flags are any value but 0, on the wire as in the record.
TEST_F(Arguments, AFlagOfAnyValueIsOne) {
    for (const std::uint32_t flag : {1U, 2U, 0xffffffffU, 0x80000000U, 0x100U}) {
        FakeTransport transport(Units{flag, flag});
        serve(67, transport);
        EXPECT_THAT(transport.events(), servedCall());
        EXPECT_THAT(journal(), ElementsAre("networkSetVendor(1, 1) -> 0"));
    }
}

}  // namespace
