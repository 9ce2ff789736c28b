#pragma once

#include "control.h"

namespace framework {

// The answers of the control program to questions that a reporter is asked. Each is valid until the
// next call of its function; requests are served one at a time.

controlVlans* answerVlans();
controlDhcp* answerDhcp();

}  // namespace framework
