#pragma once

#include "board/support/Descriptor.h"

namespace varo {

using board::Descriptor;

}  // namespace varo
