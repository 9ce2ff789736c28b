#pragma once

#include "board/support/CodedFailure.h"
#include "board/switch/codes.h"

namespace switchboard {

/// Why a call of the switch fails.
using Failure = board::CodedFailure<Code>;

}  // namespace switchboard
