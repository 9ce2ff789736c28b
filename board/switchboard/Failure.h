#pragma once

#include "board/support/CodedFailure.h"
#include "board/switchboard/codes.h"

namespace switchboard {

/// Why a call of the switch fails.
using Failure = support::CodedFailure<Code>;

}  // namespace switchboard
