#pragma once

#include <string>

namespace mngctl {

/// The rule that holds from now on in a zone of this machine's zone database (tzfile(5)), in
/// /usr/share/zoneinfo or the directory that TZDIR names. Throws UsageError when there is none.
std::string ruleOfZone(const std::string& name);

}  // namespace mngctl
