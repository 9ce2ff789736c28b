#pragma once

#include "mngctl/rpc/client.h"
#include "mngctl/wire/json.h"

namespace mngctl {

/// A procedure of the network program. Arguments and results are JSON objects; what is no record on
/// the wire is an object with one field, "value" in an argument and "result" in a result.
struct Procedure {
    unsigned number;
    std::string_view name;
    std::string_view argumentType;  ///< as in the interface file
    std::string_view resultType;
    Json (*describeArgument)();  ///< as describeJson does
    Json (*describeResult)();
    /// The argument as it would be sent, defaults filled in. Throws UsageError.
    Json (*checkArgument)(const Json& argument);
    /// Checks the argument, calls, and waits for the result.
    Json (*call)(Client& client, const Json& argument);
};

/// All procedures by number, the null procedure first.
std::span<const Procedure> procedures();

/// Throws UsageError, with the names that are nearest, if there is none.
const Procedure& findProcedure(std::string_view name);

/// An argument from words: the fields in their order, or one word with a JSON object if the
/// argument is a record. Throws UsageError that tells what the procedure takes.
Json argumentFromWords(const Procedure& procedure, std::span<const std::string> words);

/// How the argument is written on the command line, such as "primary:IPv4 secondary:IPv4".
std::string argumentUsage(const Procedure& procedure);

/// The outcome if it says that the board did not do what was asked, else 0. What a question
/// (is_...) answers above 0 is no refusal.
int refusal(const Procedure& procedure, const Json& result);

}  // namespace mngctl
