#include "calls/ProcedureCall.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>

const std::vector<ProcedureCall>& procedureCalls() {
    static const std::vector<ProcedureCall> calls = [] {
        std::vector<ProcedureCall> all;
        for (auto part : {callsOfAddressing, callsOfManagement, callsOfResolver, callsOfTime}) {
            std::ranges::move(part(), std::back_inserter(all));
        }
        std::ranges::stable_sort(all, {}, &ProcedureCall::number);
        return all;
    }();
    return calls;
}

const ProcedureCall& procedureCall(unsigned int number) {
    const auto call = std::ranges::find(procedureCalls(), number, &ProcedureCall::number);
    if (call == procedureCalls().end()) {
        throw std::out_of_range("no call of that procedure");
    }
    return *call;
}

ProcedureCall statusCall(unsigned int number, const char* procedure, const Argument& argument,
                         const std::string& exportedCall) {
    return {
        number, procedure, argument, Filling::status, exportedCall, [](const Circumstances& found) {
            return Units{static_cast<std::uint32_t>(found.status)};
        }};
}

ProcedureCall fillCall(unsigned int number, const char* procedure, const std::string& exportedCall,
                       Result& (*filled)(Result& result), std::vector<std::ptrdiff_t> outputs) {
    return {number,
            procedure,
            Argument(),
            Filling::fill,
            exportedCall,
            [filled](const Circumstances& found) {
                Result result(found.telling);
                return filled(result).units();
            },
            std::move(outputs)};
}

void PrintTo(const ProcedureCall& call, std::ostream* out) {
    *out << call.number << " " << call.procedure << ": " << call.exportedCall;
}
