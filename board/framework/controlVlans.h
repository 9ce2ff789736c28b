#pragma once

#include "control.h"

namespace framework {

/// The answer of the control program on the VLANs. It belongs to the function, and is valid until
/// the next call; requests are served one at a time.
controlVlans* answerVlans();

}  // namespace framework
