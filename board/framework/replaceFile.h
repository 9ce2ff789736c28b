#pragma once

#include "board/support/replaceFile.h"
