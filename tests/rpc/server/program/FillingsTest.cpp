// Results that come about otherwise than by filling a record.

#include "program/ProgramTest.h"

#include <limits>

namespace {

class Fillings : public ProgramTest {
protected:
    /// The units of an octet run, a text and so on, out of a result.
    static Units part(const Units& units, std::size_t from, std::size_t count) {
        const auto begin = units.begin() + static_cast<std::ptrdiff_t>(from);
        return {begin, begin + static_cast<std::ptrdiff_t>(count)};
    }
};

TEST_F(Fillings, TheStateOfFtpIsTheResult) {
    const ProcedureCall& state = procedureCall(2);
    EXPECT_EQ(serve(state, 1), Units{1});
    EXPECT_EQ(serve(state, 0), Units{0});
    EXPECT_EQ(serve(state, 1006), Units{1006});
    EXPECT_THAT(journal(), ElementsAre("networkGetFtpState() -> 1", "networkGetFtpState() -> 0",
                                       "networkGetFtpState() -> 1006"));
}

TEST_F(Fillings, SettingIpv6ProtoIsAlwaysASuccess) {
    for (const int status : {-1, 7, 0}) {
        EXPECT_EQ(serve(procedureCall(96), status), Units{0});
    }
    EXPECT_THAT(journal(),
                ElementsAre("networkSetIPv6Proto(1) -> -1", "networkSetIPv6Proto(1) -> 7",
                            "networkSetIPv6Proto(1) -> 0"));
}

TEST_F(Fillings, SettingTheManagementVlansModeDoesNothing) {
    for (const Units& argument : {Units{0, 0}, Units{1, 2}, Units{~0U, ~0U}}) {
        FakeTransport transport(argument);
        serve(74, transport);
        EXPECT_THAT(transport.events(), servedCall());
        EXPECT_EQ(transport.result, Units{0});
    }
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Fillings, AFailedReadOfTheOntsInterfaceIsAllZero) {
    const ProcedureCall& read = procedureCall(81);
    EXPECT_THAT(serve(read), Not(Each(0)));
    for (const int status : {-1, 1}) {
        EXPECT_EQ(serve(read, status), Units(23, 0));
        ASSERT_EQ(exportedFunctions().outputs.size(), 3U);
    }
    // Nor does anything remain of an earlier read.
    serve(read);
    exportedFunctions().fill = false;
    EXPECT_EQ(serve(read, 0), Units(23, 0));
    journal();
}

TEST_F(Fillings, AReadOfTheOntsInterfaceThatFailsOnItsWayIsAllZero) {
    const ProcedureCall& read = procedureCall(81);
    for (const std::size_t filled : {1U, 2U}) {
        exportedFunctions().fillLimit = std::numeric_limits<std::size_t>::max();
        EXPECT_THAT(serve(read), Not(Each(0)));
        exportedFunctions().fillLimit = filled;
        EXPECT_EQ(serve(read, -1), Units(23, 0));
        ASSERT_EQ(exportedFunctions().outputs.size(), 3U);
        // What was filled would have been told.
        Units expected(23, 0);
        for (unsigned int output = 0; output < filled; ++output) {
            expected[output] = exportedFunctions().telling.number(output + 1);
        }
        EXPECT_EQ(serve(read), expected);
    }
    EXPECT_THAT(journal(), ElementsAre("networkGetOntMng() -> 0", "networkGetOntMng() -> -1",
                                       "networkGetOntMng() -> 0", "networkGetOntMng() -> 0",
                                       "networkGetOntMng() -> -1", "networkGetOntMng() -> 0"));
}

TEST_F(Fillings, TheOntsInterfaceFindsAClearRecord) {
    serve(procedureCall(81));
    serve(procedureCall(81));
    EXPECT_THAT(exportedFunctions().valuesBefore, ElementsAre(0, 0, 0));
    journal();
}

// The exported function has a buffer of 200 bytes; of its 199 characters the first 99 travel.
TEST_F(Fillings, OfALongZoneNameTheFirst99CharactersTravel) {
    const Units result = serve(procedureCall(27));
    ASSERT_EQ(result.size(), 101U);
    const std::string name = exportedFunctions().telling.text(2, 199);
    EXPECT_EQ(part(result, 1, 99), Units(name.begin(), name.begin() + 99));
    EXPECT_EQ(result[100], 0U);
    journal();
}

TEST_F(Fillings, AZoneNameOfAnEarlierCallStaysWhenNoneIsRead) {
    const Units before = serve(procedureCall(27));
    exportedFunctions().fill = false;
    EXPECT_EQ(serve(procedureCall(27), -1), before);
    journal();
}

TEST_F(Fillings, TheNineSoftwareTextsAreOneRecordInOrder) {
    FakeTransport transport(Units{});
    serve(35, transport);
    const std::vector<const void*>& outputs = exportedFunctions().outputs;
    ASSERT_EQ(outputs.size(), 9U);
    EXPECT_EQ(outputs[0], transport.resultPlace);
    for (unsigned int i = 0; i < 9; ++i) {
        EXPECT_EQ(static_cast<const char*>(outputs[i]) - static_cast<const char*>(outputs[0]),
                  100 * i);
        const std::string text = exportedFunctions().telling.text(i + 1, 99);
        EXPECT_EQ(part(transport.result, 100 * i, 99), Units(text.begin(), text.end()));
    }
    journal();
}

TEST_F(Fillings, VersionLinesCarryTheIndexAsItWasLeft) {
    for (const unsigned int number : {84U, 85U}) {
        FakeTransport transport(Units{41});
        serve(number, transport);
        EXPECT_THAT(exportedFunctions().valuesBefore, ElementsAre(41));
        ASSERT_EQ(transport.result.size(), 101U);
        EXPECT_EQ(transport.result[100], exportedFunctions().telling.number(2));

        exportedFunctions().fill = false;
        FakeTransport unchanged(Units{42});
        serve(number, unchanged);
        EXPECT_EQ(unchanged.result[100], 42U);
        exportedFunctions().fill = true;
    }
    EXPECT_THAT(
        journal(),
        ElementsAre("networkGetVersionLineApl(41) -> 0", "networkGetVersionLineApl(42) -> 0",
                    "networkGetVersionLinePlat(41) -> 0", "networkGetVersionLinePlat(42) -> 0"));
}

/// A procedure whose exported function fills something of another form than the result.
struct ConvertedResult {
    unsigned int procedure;
    /// What the exported function finds in it after a call that filled everything.
    Units (*found)(Result result);
};

constexpr ConvertedResult convertedResults[] = {
    {3, [](Result result) { return result.numbers().octets(6).numbers(4).units(); }},
    {13, [](Result result) { return result.flags(2).numbers(2).units(); }},
    {34, [](Result result) { return result.numbers(3).flags().units(); }},
    {36, [](Result result) { return result.flags().units(); }},
    {38, [](Result result) { return result.flags().units(); }},
    {83, [](Result result) { return result.flags().units(); }},
    {92, [](Result result) { return result.flags().units(); }},
};

TEST_F(Fillings, AConvertedResultStartsFromTheResultAsItIs) {
    for (const ConvertedResult& converted : convertedResults) {
        const ProcedureCall& call = procedureCall(converted.procedure);
        for (int round = 0; round < 2; ++round) {  // flags are told both ways
            nextGeneration();
            exportedFunctions().fill = true;
            const Units filled = serve(call);
            exportedFunctions().fill = false;
            EXPECT_EQ(serve(call), filled) << call.procedure;
            EXPECT_EQ(exportedFunctions().valuesBefore,
                      converted.found(Result(exportedFunctions().telling)))
                << call.procedure;
        }
    }
    journal();
}

TEST_F(Fillings, TheFirstResultsOfAProcessAreZero) {
    // In a process of its own, so that no other test was before it.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            exportedFunctions().fill = false;
            bool isZero = true;
            for (const ProcedureCall& call : procedureCalls()) {
                const Units result = serve(call);
                // An index is not the result's own.
                const std::size_t own =
                    call.number == 84 || call.number == 85 ? 100 : result.size();
                isZero = isZero && part(result, 0, own) == Units(own, 0);
            }
            std::exit(isZero && !HasFailure() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
