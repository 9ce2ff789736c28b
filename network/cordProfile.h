#pragma once

#include "platform/features.h"

/// Whether the CORD profile is active: a VLAN that is missing in the database is created, and
/// telnet and the auto-configuration client are off by factory setting.
inline bool isCordProfile() {
    constexpr int cordProfile = 12;
    return isActive(cordProfile);
}
