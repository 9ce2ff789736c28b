#pragma once

#include "mngctl/outcome.h"
#include "mngctl/session.h"

namespace mngctl {

/// Runs mngctl: the command that the words name, or, without one, a prompt on a terminal and a
/// script elsewhere. Failures are reported on the error stream. Does not throw.
Exit runApplication(const std::vector<std::string>& words, const Streams& streams) noexcept;

}  // namespace mngctl
