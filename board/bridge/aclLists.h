#pragma once

#include "platform/acl.h"

#include <string>

/// What a container of access lists holds.
struct ACLContainer_t::Lists {
    Lists(const std::string& bridgeInterface, const std::string& containerKind)
        : bridge(bridgeInterface), kind(containerKind) {}

    const std::string bridge;  ///< the bridge's interface
    const std::string kind;
};
