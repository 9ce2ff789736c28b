#pragma once

#include "board/varo/link/ipv4Prefix.h"
#include "board/varo/link/ipv6Prefix.h"
#include "board/varo/settings/Setting.h"
#include "varo/records.h"
#include "varo/sntpRecords.h"

#include <vector>

namespace varo {

#define SETTING(type, name) const type& name();
#include "board/varo/settings/allSettings.def"
#undef SETTING

/// All of them, in the order in which they are put into force. The schema of the store has their
/// tables.
const std::vector<const AnySetting*>& allSettings();

/// Puts all into force. A failing one does not keep the others from it; the last failure is thrown,
/// those before it are logged.
void applyAll(const Library::Change& change);

}  // namespace varo
