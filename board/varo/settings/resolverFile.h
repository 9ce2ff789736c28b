#pragma once

#include "varo/records.h"

#include <string>
#include <vector>

namespace varo {

struct ResolverText {
    std::string content;               ///< of the file
    std::vector<std::string> leftOut;  ///< values that have no place in such a file, and why
};

/// Resolver settings in the form of resolv.conf(5). The domains become the search list. The C
/// library asks the first three servers only, so the primary ones of both families come first.
ResolverText resolverText(const varoLib_s_dns& dns, const varoLib_s_dns6& dns6);

}  // namespace varo
