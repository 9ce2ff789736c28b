#pragma once

#include "board/varo/settings/ipv4.h"
#include "board/varo/settings/ipv6.h"
#include "board/varo/store/Group.h"
#include "varo/records.h"

namespace varo {

// The record groups of the store.

const Group<varoLib_s_internalConfig>& internalConfigGroup();
const Group<Ipv4Settings>& ipv4Group();
const Group<varoLib_s_dhcp>& dhcpGroup();
const Group<Ipv6Settings>& ipv6Group();
const Group<varoLib_s_dhcp6>& dhcp6Group();
const Group<varoLib_s_dns>& dnsGroup();
const Group<varoLib_s_dns6>& dns6Group();

}  // namespace varo
