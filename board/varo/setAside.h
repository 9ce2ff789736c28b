#pragma once

#include "board/support/setAside.h"

namespace varo {

using board::setAside;

}  // namespace varo
