#pragma once

#include "mngctl/wire/fields.h"

namespace mngctl {

template <>
std::span<const Choice> choicesOf<rpcArpType>();
template <>
std::span<const Choice> choicesOf<rpcVlanMode>();
template <>
std::span<const Choice> choicesOf<rpcNetworkSprotocol>();
template <>
std::span<const Choice> choicesOf<rpcSnmpCommunityAccess>();
template <>
std::span<const Choice> choicesOf<rpcSnmpSystemSelector>();

}  // namespace mngctl
