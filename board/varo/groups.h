#pragma once

#include "board/varo/Group.h"
#include "varo/records.h"

namespace varo {

// The record groups of the store.

const Group<varoLib_s_internalConfig>& internalConfigGroup();
const Group<varoLib_s_dns>& dnsGroup();
const Group<varoLib_s_dns6>& dns6Group();

}  // namespace varo
