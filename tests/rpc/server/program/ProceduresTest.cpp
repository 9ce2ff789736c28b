// Every procedure: the exported function that it calls, and the result that it carries back.

#include "program/ProgramTest.h"

#include <climits>
#include <map>
#include <set>

namespace {

constexpr int statuses[] = {0, -1, -5, -6, 7, INT_MIN, INT_MAX};

/// What comes back from a call, given how the exported functions behave.
Units expected(const ProcedureCall& call, int status) {
    return call.result({exportedFunctions().telling, status, exportedFunctions().fill});
}

class Procedure : public ProgramTest, public testing::WithParamInterface<ProcedureCall> {};

INSTANTIATE_TEST_SUITE_P(, Procedure, testing::ValuesIn(procedureCalls()), testName);

TEST_P(Procedure, CallsItsExportedFunctionAndCarriesTheOutcome) {
    const ProcedureCall& call = GetParam();
    for (const int status : statuses) {
        nextGeneration();
        EXPECT_EQ(difference(expected(call, status), serve(call, status)), "")
            << "status " << status;
        EXPECT_THAT(journal(), ElementsAreArray(journalOf(call, status)));
    }
}

class Procedures : public ProgramTest {};

TEST_F(Procedures, DecodeAllOfTheirArgumentIntoAClearArea) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        // A record of the largest argument, in which nothing is zero, goes before.
        FakeTransport before(Units(1037, 0x5a5a5a5a));
        serve(98, before);
        EXPECT_THAT(before.events(), servedCall());

        FakeTransport transport(call.argument.units());
        serve(call.number, transport);
        EXPECT_TRUE(transport.areaWasClear);
        EXPECT_TRUE(transport.areaWasAligned);
        EXPECT_EQ(transport.bytesLeft, 0U);
    }
    journal();
}

TEST_F(Procedures, HaveOneResultThatEveryCallOverwrites) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        FakeTransport first(call.argument.units());
        serve(call.number, first);
        nextGeneration();
        FakeTransport second(call.argument.units());
        serve(call.number, second);
        EXPECT_NE(first.resultPlace, nullptr);
        EXPECT_EQ(first.resultPlace, second.resultPlace);
        EXPECT_EQ(difference(expected(call, 0), second.result), "");
    }
    journal();
}

TEST_F(Procedures, KeepWhatTheExportedFunctionLeavesAlone) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        exportedFunctions().fill = true;
        serve(call);
        exportedFunctions().fill = false;
        EXPECT_EQ(difference(expected(call, -1), serve(call, -1)), "");
        EXPECT_EQ(difference(expected(call, 0), serve(call)), "");
    }
    journal();
}

TEST_F(Procedures, HandOverThePlacesOfTheirResults) {
    for (const ProcedureCall& call : procedureCalls()) {
        SCOPED_TRACE(testing::PrintToString(call));
        exportedFunctions().outputs.clear();
        FakeTransport transport(call.argument.units());
        serve(call.number, transport);
        const std::vector<const void*>& outputs = exportedFunctions().outputs;
        ASSERT_EQ(outputs.size(), call.outputs.size());
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            if (call.outputs[i] != ProcedureCall::elsewhere) {
                EXPECT_EQ(static_cast<const char*>(outputs[i]),
                          static_cast<const char*>(transport.resultPlace) + call.outputs[i])
                    << "output " << i;
            }
        }
    }
    journal();
}

TEST_F(Procedures, ShareNoResult) {
    std::map<const void*, unsigned int> procedures;
    for (const ProcedureCall& call : procedureCalls()) {
        FakeTransport transport(call.argument.units());
        serve(call.number, transport);
        const auto [entry, isNew] = procedures.emplace(transport.resultPlace, call.number);
        EXPECT_EQ(entry->second, call.number);
    }
    std::set<unsigned int> numbers;
    for (const ProcedureCall& call : procedureCalls()) {
        numbers.insert(call.number);
    }
    EXPECT_EQ(procedures.size(), numbers.size());
    journal();
}

}  // namespace
