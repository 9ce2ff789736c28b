// Which numbers are procedures.

#include "program/ProgramTest.h"

#include <algorithm>

namespace {

struct NamedNumber {
    unsigned int number;
    std::string name;
    bool operator==(const NamedNumber&) const = default;
};

void PrintTo(const NamedNumber& procedure, std::ostream* out) {
    *out << procedure.number << " " << procedure.name;
}

/// The program's table.
const std::vector<NamedNumber> table = {
#define PROCEDURE(number, name, argument, result) {number, #name},
#include "network/rpc/procedures.def"
#undef PROCEDURE
};

/// Whether the number is one of the procedures that are called here.
bool isAssigned(unsigned int number) {
    return std::ranges::find(procedureCalls(), number, &ProcedureCall::number) !=
           procedureCalls().end();
}

class Numbers : public ProgramTest {};

TEST_F(Numbers, TheNullProcedureAnswersWithNothing) {
    for (const Units& argument : {Units{}, Units{1, 2, 3}}) {
        FakeTransport transport(argument);
        serve(0, transport);
        EXPECT_THAT(transport.events(), ElementsAre("reply SUCCESS"));
        EXPECT_THAT(transport.result, IsEmpty());
    }
}

TEST_F(Numbers, EveryNumberIsServedOrRefused) {
    std::vector<unsigned int> numbers;
    for (unsigned int number = 1; number <= 300; ++number) {
        numbers.push_back(number);
    }
    numbers.insert(numbers.end(), {0x7fffffffU, 0x80000000U, 0x80000001U, 0xfffffffeU, 0xffffffffU,
                                   0x100U + 1, 0x10000U + 1, 0x1000000U + 1});
    for (const unsigned int number : numbers) {
        SCOPED_TRACE(number);
        FakeTransport transport(isAssigned(number) ? procedureCall(number).argument.units()
                                                   : Units{1, 2, 3});
        serve(number, transport);
        if (isAssigned(number)) {
            EXPECT_THAT(transport.events(), servedCall());
            journal();
        } else {
            EXPECT_THAT(transport.events(), ElementsAre("reply PROC_UNAVAIL"));
            EXPECT_THAT(journal(), IsEmpty());
        }
    }
}

TEST_F(Numbers, TheTableHoldsTheProceduresThatAreCalledHere) {
    std::vector<NamedNumber> called;
    for (const ProcedureCall& call : procedureCalls()) {
        const NamedNumber procedure{call.number, call.procedure};
        if (called.empty() || called.back() != procedure) {
            called.push_back(procedure);
        }
    }
    EXPECT_EQ(called, table);
}

}  // namespace
