#pragma once

#include "board/support/answer.h"

namespace bridge {

/// What the operations on access lists return. 0 is success, all failures are positive.
enum Code : int {
    success = 0,
    unknownList = 1,
    unknownRule = 2,       ///< the list has no rule of that id
    unknownCondition = 3,  ///< the rule has no condition of that number
    listExists = 4,        ///< the container has a list of that name
    invalidName = 5,       ///< empty, too long, or with characters that cannot be printed
    unsupported = 6,  ///< a type, a direction or a condition that this bridge does not filter by
    conditionExists = 7,  ///< the rule has its one condition
    unknownPort = 8,      ///< the interface registry knows no port of that id
    listAssigned = 9,     ///< the list is assigned to a port already
    notAssigned = 10,     ///< the list is not assigned to that port
    portTaken = 11,       ///< another list is assigned to that port
    storageFailed = 12,   ///< the rules cannot be stored; the list is as it was
    filterFailed = 13,    ///< the kernel's packet filter refused; the list is as it was
    internalError = 14,   ///< out of memory, or a defect of the bridge
};

using support::Failure;

}  // namespace bridge
