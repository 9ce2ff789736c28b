#pragma once

#include "calls/Wire.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

/// How a procedure's result comes about.
enum class Filling {
    status,     ///< the exported function's status
    fill,       ///< filled by the exported function, whose status is dropped
    combined,   ///< both
    discarded,  ///< nothing: the status is dropped
    none,       ///< nothing: no function is called
};

/// What a call comes across.
struct Circumstances {
    Telling telling;  ///< what the outputs were filled with last
    int status;       ///< that the exported function returns
    bool fills;       ///< whether it fills its outputs
};

/// A call of a procedure, as a client and an exported function see it.
struct ProcedureCall {
    unsigned int number;
    const char* procedure;  ///< name without the parts that are the same for all
    Argument argument;
    Filling filling;
    /// The exported function's call in the journal, without its status; empty when there is none.
    std::string exportedCall;
    std::function<Units(const Circumstances&)> result;
    /// Where in the result the outputs lie, in bytes; `elsewhere` for those that do not.
    std::vector<std::ptrdiff_t> outputs{};

    static constexpr std::ptrdiff_t elsewhere = -1;

    /// The name of the exported function.
    std::string function() const { return exportedCall.substr(0, exportedCall.find('(')); }
};

/// At least one call of every procedure, more where flags have to be told apart.
const std::vector<ProcedureCall>& procedureCalls();

/// The first call of a procedure. Throws std::out_of_range.
const ProcedureCall& procedureCall(unsigned int number);

std::vector<ProcedureCall> callsOfAddressing();
std::vector<ProcedureCall> callsOfManagement();
std::vector<ProcedureCall> callsOfResolver();
std::vector<ProcedureCall> callsOfTime();

/// A call whose result is the exported function's status.
ProcedureCall statusCall(unsigned int number, const char* procedure, const Argument& argument,
                         const std::string& exportedCall);

/// A call that fills its result, as `filled` says.
ProcedureCall fillCall(unsigned int number, const char* procedure, const std::string& exportedCall,
                       Result& (*filled)(Result& result), std::vector<std::ptrdiff_t> outputs);

/// A record that the exported function fills whole.
template <class Record>
Result& filled(Result& result) {
    return result.record<Record>();
}

/// Lets messages show a call by its number, name and argument.
void PrintTo(const ProcedureCall& call, std::ostream* out);
