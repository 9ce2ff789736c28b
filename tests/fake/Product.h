#pragma once

#include <map>
#include <set>
#include <string>

namespace fake {

/// What the product's neighbours in the process tell of it.
struct Product {
    bool isClearConfigInProgress = false;
    unsigned int maxSessions = 16;
    std::set<std::string> supportedFeatures;
    std::string systemVersion = " 7.3.1";
    /// Kinds of host texts, where they differ from what the form says.
    std::map<std::string, int> addressTypes;
};

}  // namespace fake
