#pragma once

#include "board/support/answer.h"

namespace switchboard {

/// What the calls of the switch return. 0 is success, all failures are positive.
enum Code : int {
    success = 0,
    notConfigured = 1,       ///< the host has not said where the state directory is
    noSuchDatabase = 2,      ///< the handle names another VLAN database than the default one
    invalidArgument = 3,     ///< a pointer is null
    invalidVlan = 4,         ///< the VLAN id is not one from 1 to 4094
    noSuchVlan = 5,          ///< the VLAN is not in the database
    vlanExists = 6,          ///< the VLAN to be created is in the database already
    noSuchPort = 7,          ///< the switch has no such port
    notMember = 8,           ///< the port is not in the VLAN, or in none
    uplinkConflict = 9,      ///< the uplink cannot carry the VLAN in that way
    profileConflict = 10,    ///< the uplink rules of the profile forbid it
    noHardwareAddress = 11,  ///< the management interface is missing or no Ethernet interface
    storageFailed = 12,      ///< the file could not be read or written; the old state stays
    newerFile = 13,          ///< a later release wrote the file; it is left as it is
    internalError = 14,      ///< out of memory, or a defect
};

using support::Failure;

}  // namespace switchboard
