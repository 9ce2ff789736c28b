#pragma once

#include "board/varo/store/Group.h"
#include "varo/records.h"

namespace varo {

// Terminal and file-transfer services, and the auto-configuration client.

const Group<varoLib_s_telnetSrv>& telnetGroup();
const Group<varoLib_s_sshSrv>& sshGroup();
const Group<varoLib_s_ftpSrv>& ftpGroup();
/// By source. The source of a record that is read is the caller's to fill in.
const Group<varoLib_s_acs>& acsGroup();

}  // namespace varo
