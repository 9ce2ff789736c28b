#pragma once

#include "mngctl/rpc/client.h"
#include "mngctl/wire/json.h"

#include <istream>
#include <ostream>

namespace mngctl {

/// Where a run reads and writes. All outlive the run.
struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool terminal;  ///< somebody sits there: questions may be asked
};

/// What commands work with. One session lasts for the whole run and keeps the connections.
struct Session {
    Streams streams;
    Client client{};
    Settings settings{};  ///< of the command that runs
    bool leaving = false;

    /// What a procedure of the network program answers.
    template <class Result>
    Result ask(Stub<void, Result> stub) {
        Result result{};
        client.call(networkProgram, stub, result);
        return result;
    }
    template <class Argument, class Result>
    Result ask(Stub<Argument, Result> stub, std::type_identity_t<Argument> argument) {
        Result result{};
        client.call(networkProgram, stub, argument, result);
        return result;
    }

    /// Prints what was read: the JSON if that is asked for, else the text.
    void print(const Json& json, const std::string& text) {
        streams.out << (settings.json ? toText(json) : text);
    }
};

}  // namespace mngctl
