#pragma once

#include "mngctl/outcome.h"
#include "mngctl/session.h"

#include <fmt/format.h>

namespace mngctl {

/// The reply's text. Throws Refused, with the board's reason, if it says no to `what`.
inline std::string accepted(const controlReply& reply, std::string_view what) {
    std::string text = reply.reply == nullptr ? "" : reply.reply;
    if (reply.result != 0) {
        throw Refused(fmt::format(
            "the board refused to {}{}", what,
            text.empty() ? fmt::format(": result {}", reply.result) : ": " + printable(text)));
    }
    return text;
}

/// Calls a procedure of the control program that answers with a reply.
template <class Argument>
std::string ask(Session& session, std::string_view what, Stub<Argument, controlReply> stub,
                std::type_identity_t<Argument>& argument) {
    Decoded<controlReply> reply(xdr_controlReply);
    session.client.call(controlProgram, stub, argument, *reply);
    return accepted(*reply, what);
}

inline std::string ask(Session& session, std::string_view what, Stub<void, controlReply> stub) {
    Decoded<controlReply> reply(xdr_controlReply);
    session.client.call(controlProgram, stub, *reply);
    return accepted(*reply, what);
}

/// Prints the board's reply, line by line, or `otherwise` if it is empty and that is not.
void printReply(Session& session, const std::string& reply, const std::string& otherwise);

}  // namespace mngctl
