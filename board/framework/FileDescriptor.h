#pragma once

#include "board/support/Descriptor.h"

namespace board {

using FileDescriptor = Descriptor;

}  // namespace board
