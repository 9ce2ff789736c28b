#pragma once

#include "mngctl/session.h"

#include <string>

namespace mngctl {

/// The configuration that is in force, with its source.
rpcSntpConfigWSHost readNtpConfig(Session& session);

/// The SNTP client's configuration and status as JSON. "status" is null if the board does not know
/// it. Offsets are positive when the server's clock is ahead of the board's.
Json readNtp(Session& session, const rpcSntpConfigWSHost& config);

/// The same for people.
std::string describeNtp(const Json& json);

}  // namespace mngctl
