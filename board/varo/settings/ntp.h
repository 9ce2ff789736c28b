#pragma once

#include "board/varo/store/RecordStore.h"
#include "varo/sntpRecords.h"

namespace varo {

/// The source whose configuration the SNTP client runs with: what was set by hand goes before what
/// was learnt, as long as it names a server.
rpcSntpConfigHost ntpInForce(RecordStore::Session& session, int& source);

}  // namespace varo
