#pragma once

#include "varo/sntpRecords.h"

#include <string>

namespace ntp {

/// What chronyc(1) says, with -c, each of its lines ended by a line end.
struct Reports {
    std::string names;  ///< of "tracking" and "sources -a", sources by the names they were given
    std::string addresses;  ///< of "sources -a" and "ntpdata", sources by their addresses
};

/// The status of a client that does not run, as it is not wanted.
rpcSntpInfoHost statusOfNone(const rpcSntpConfigHost& config);

/// The status records of a client that runs with the configuration. Offsets are positive when the
/// server's clock is ahead of the board's (RFC 5905); what is not known is 0. Throws
/// std::runtime_error for reports in another form.
rpcSntpInfoHost statusOf(const rpcSntpConfigHost& config, const Reports& reports);

}  // namespace ntp
