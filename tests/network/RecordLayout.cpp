// Records that the product hands to imported libraries, byte by byte; what does not fit is found by
// the compiler.

#include "platform/acl.h"
#include "varo/records.h"

#include <cstddef>
#include <type_traits>

static_assert(std::is_standard_layout_v<varoLib_s_ipv6> && std::is_trivial_v<varoLib_s_ipv6>);
static_assert(sizeof(varoLib_s_ipv6) == 2204);
static_assert(offsetof(varoLib_s_ipv6, ipv6Addr) == 0);
static_assert(sizeof(varoLib_s_ipv6::ipv6Addr) == 100);
static_assert(offsetof(varoLib_s_ipv6, prefixLen) == 100);
static_assert(sizeof(varoLib_s_ipv6::prefixLen) == 4);
static_assert(offsetof(varoLib_s_ipv6, ipv6AddrList) == 104);
static_assert(sizeof(varoLib_s_ipv6::ipv6AddrList) == 2000);
static_assert(offsetof(varoLib_s_ipv6, ipv6Gw) == 2104);
static_assert(sizeof(varoLib_s_ipv6::ipv6Gw) == 100);

static_assert(std::is_standard_layout_v<zubridge_acl_condition> &&
              std::is_trivial_v<zubridge_acl_condition>);
static_assert(sizeof(zubridge_acl_condition) == 20);
static_assert(offsetof(zubridge_acl_condition, kind) == 0);
static_assert(offsetof(zubridge_acl_condition, selector) == 4);
static_assert(offsetof(zubridge_acl_condition, flags) == 8);
static_assert(offsetof(zubridge_acl_condition, address) == 12);
static_assert(offsetof(zubridge_acl_condition, wildcard) == 16);

// The DHCPv6 record is known by its first two words.
static_assert(offsetof(varoLib_s_dhcp6, updateSelector) == 0);
static_assert(offsetof(varoLib_s_dhcp6, dhcpEnabled) == 4);
