// IPv6 on a board that has none: nothing is known, and nothing can be changed.

#include "board/varo/codes.h"
#include "varo/varoLib.h"

int varoGetIpv6(varoLib_s_ipv6*) { return varo::systemFailed; }
int varoSetIpv6Addr(varoLib_s_ipv6*) { return varo::systemFailed; }
int varoSetIpv6Gw(varoLib_s_ipv6*) { return varo::systemFailed; }
int varoRemoveIpv6Addr() { return varo::systemFailed; }
int varoRemoveIpv6Gw() { return varo::systemFailed; }
int varoGetDhcp6(varoLib_s_dhcp6*) { return varo::systemFailed; }
int varoUpdateDhcp6(varoLib_s_dhcp6*) { return varo::systemFailed; }
