#pragma once

#include "mngctl/rpc/rpcHandle.h"

namespace mngctl {

/// Asks the port mapper (RFC 1833, version 2) on `host`, over the same protocol, for the port of a
/// program. Throws NoAnswer, with what to do, if there is no mapper, no answer, or no such program.
std::uint16_t askPortMapper(const sockaddr_in& host, const Program& program,
                            const Settings& settings);

}  // namespace mngctl
