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

static_assert(std::is_standard_layout_v<varoLib_s_dhcp> && std::is_trivial_v<varoLib_s_dhcp>);
static_assert(sizeof(varoLib_s_dhcp) == 168);
static_assert(offsetof(varoLib_s_dhcp, updateSelector) == 0);
static_assert(offsetof(varoLib_s_dhcp, dhcpEnabled) == 4);
static_assert(offsetof(varoLib_s_dhcp, vendorClassEnabled) == 8);
static_assert(offsetof(varoLib_s_dhcp, circuitId) == 12);
static_assert(sizeof(varoLib_s_dhcp::circuitId) == 150);
static_assert(offsetof(varoLib_s_dhcp, option82Enabled) == 164);

static_assert(std::is_standard_layout_v<varoLib_s_sntpTimeZone> &&
              std::is_trivial_v<varoLib_s_sntpTimeZone>);
static_assert(sizeof(varoLib_s_sntpTimeZone) == 236);
static_assert(offsetof(varoLib_s_sntpTimeZone, name) == 0);
static_assert(sizeof(varoLib_s_sntpTimeZone::name) == 200);
static_assert(offsetof(varoLib_s_sntpTimeZone, offset) == 200);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstOffset) == 204);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstSMonth) == 208);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstSWeek) == 210);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstSDayInWeek) == 212);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstSTime) == 216);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstEMonth) == 220);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstEWeek) == 222);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstEDayInWeek) == 224);
static_assert(offsetof(varoLib_s_sntpTimeZone, dstETime) == 228);
static_assert(offsetof(varoLib_s_sntpTimeZone, preset) == 232);
