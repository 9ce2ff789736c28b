#pragma once

#include "board/varo/store/Group.h"
#include "varo/records.h"

#include <type_traits>

namespace varo {

// The SNMP agent.

using TrapManager = std::remove_extent_t<decltype(varoLib_s_subag::managers)>;
using SnmpCommunity = std::remove_extent_t<decltype(varoLib_s_snmpCommunity::communities)>;

const Group<varoLib_s_subag>& trapManagersGroup();
const Group<varoLib_s_snmpCommunity>& snmpCommunitiesGroup();
const Group<varoLib_s_snmpSystem>& snmpSystemGroup();

}  // namespace varo
