#pragma once

#include "control.h"

namespace framework {

/// Answers what the DHCP client tells of the board. The answer is valid until the next call; one
/// thread at a time.
controlDhcp* answerDhcp();

}  // namespace framework
