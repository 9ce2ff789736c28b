#pragma once

#include "board/bridge/rulesDocument.h"
#include "platform/acl.h"

#include <string>

namespace bridge {

// What an operation may be given. Each throws Failure for anything else.

/// 1 to 100 printable characters of ASCII.
void checkListName(const std::string& name);
/// Remote access is the one type.
void checkListType(int type);
/// Packets are filtered when they enter.
void checkDirection(bool outgoing);
/// A condition on the IPv4 source address.
void checkCondition(const zubridge_acl_condition& condition);

/// A rule for people: "permit 192.0.2.0, wildcard 0.0.0.255".
std::string describe(const SavedRule& rule);

}  // namespace bridge
