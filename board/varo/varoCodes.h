#pragma once

#include "board/support/answer.h"

namespace varo {

/// What the calls of the configuration library return. 0 is success, all failures are positive.
enum Code : int {
    success = 0,
    notConfigured = 1,    ///< the host has not said where the state directory is
    notOpen = 2,          ///< varoLibDestroy was called, and varoLibInit not since
    invalidArgument = 3,  ///< a record or source pointer is null
    noSuchSource = 4,     ///< the configuration source is none that the call knows
    invalidValue = 5,     ///< a text is not terminated within its field, a value out of range
    noSuchInterface = 6,  ///< Linux knows no interface of that name
    storageFailed = 7,    ///< the file could not be opened, read or written; old values stay
    storageBusy = 8,      ///< another process holds the file locked; old values stay
    newerFile = 9,        ///< a later release wrote the file; it is left as it is
    applyFailed = 10,     ///< the values are stored, but could not be put into force
    systemFailed = 11,    ///< a system call failed, or the kernel refused
    internalError = 12,   ///< out of memory, or a defect of the library
    notThere = 13,        ///< no such entry, address, route or MAC address
    tableFull = 14,       ///< there is no room for another entry
    alreadyThere = 15,    ///< there is such an entry already
};

using support::Failure;

}  // namespace varo
