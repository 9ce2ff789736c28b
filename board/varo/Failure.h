#pragma once

#include "board/support/CodedFailure.h"
#include "board/varo/codes.h"

namespace varo {

/// Why a call of the library fails.
using Failure = support::CodedFailure<Code>;

}  // namespace varo
