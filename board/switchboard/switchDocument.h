#pragma once

#include "board/support/StateFile.h"
#include "board/switchboard/VlanDatabase.h"

namespace switchboard {

/// The state of the switch in `switch.json`: a JSON document, one line.
extern const support::StateFormat<VlanDatabase> switchFormat;

}  // namespace switchboard
