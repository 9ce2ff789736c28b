#pragma once

#include <span>
#include <string>
#include <string_view>

namespace mngctl {

/// " (did you mean A or B?)" with the names that differ from `wrong` by little; empty if none does.
std::string suggestion(std::string_view wrong, std::span<const std::string_view> known);

/// A domain name of labels (RFC 1123 section 2.1, RFC 1035 section 2.3.4), without a dot at the
/// end. Throws UsageError that says which rule it breaks.
void checkDomainName(std::string_view name);

}  // namespace mngctl
