#pragma once

#include "board/varo/store/Group.h"
#include "varo/records.h"
#include "varo/sntpRecords.h"

namespace varo {

// Time zone and SNTP client.

/// The preset of a record that is read is the caller's to fill in.
const Group<varoLib_s_sntpTimeZone>& timeZoneGroup();
/// By source; servers by host texts.
const Group<rpcSntpConfigHost>& ntpGroup();

}  // namespace varo
