#pragma once

#include "varo/records.h"

#include <string>

namespace snmp {

/// What the agent is to say and do.
struct Values {
    varoLib_s_subag trapManagers{};
    varoLib_s_snmpCommunity communities{};
    varoLib_s_snmpSystem system{};
};

/// A configuration in the form of snmpd.conf(5).
struct Configuration {
    std::string text;
    /// The part of it that a running agent does not take when it reads the text again.
    std::string fixedPart;
};

/// The configuration that makes snmpd serve the values on UDP port 161 of an interface, of all if
/// the name is empty; `hasIpv6` tells whether the machine has IPv6. Whatever characters the texts
/// consist of, they come out as they are, and nothing of them is taken for a directive.
///
/// Communities may read the standard MIB modules (mib-2, snmpMIB); read-write ones may write what
/// of system and snmp the agent lets be written. Its own extensions, which can run commands, are
/// in neither view. Traps are those of SNMPv2c.
Configuration configurationOf(const Values& values, const std::string& interface, bool hasIpv6);

}  // namespace snmp
