// Fakes of the exported functions of clock, time zone and SNTP client.

#include "exported/ExportedCall.h"
#include "network/exports.h"

FAKE(networkSetTimeInfo, (const char* text), text)
FILLING_FAKE(networkGetTimeInfo, (char* time), OutputText{time, 30})
FAKE(networkSetTimezoneOffset, (int offset), offset)
FAKE(networkSetTimezoneName, (const char* name), name)
FILLING_FAKE(networkGetTimezoneInfo, (int* offset, char* name), offset, OutputText{name, 200})
FILLING_FAKE(networkGetSntpConfig, (rpcSntpConfig * config), config)
FILLING_FAKE(networkGetSntpConfigWS, (int* source, rpcSntpConfig* config), source, config)
FILLING_FAKE(networkGetSntpConfigWSHost, (int* source, rpcSntpConfigHost* config), source, config)
FAKE(networkUpdateSntpConfig, (rpcSntpConfig * config), config)
FAKE(networkUpdateSntpConfigHost, (rpcSntpConfigHost * config), config)
FILLING_FAKE(networkGetSntpInfo, (rpcSntpInfo * info), info)
FILLING_FAKE(networkGetSntpInfoWS, (int* source, rpcSntpInfo* info), source, info)
FILLING_FAKE(networkGetSntpInfoWSHost, (int* source, rpcSntpInfoHost* info), source, info)
FAKE(networkSetSntpTimezoneDstStart,
     (unsigned int month, unsigned int week, unsigned int dayInWeek, int time), month, week,
     dayInWeek, time)
FAKE(networkSetSntpTimezoneDstEnd,
     (unsigned int month, unsigned int week, unsigned int dayInWeek, int time), month, week,
     dayInWeek, time)
FAKE(networkSetSntpTimezoneDstOffset, (int dstOffset), dstOffset)
FAKE(networkSetSntpTimezone, (int offset, const char* linuxName), offset, linuxName)
FILLING_FAKE(networkGetSntpTimezoneInfo, (rpcNetworkSntpTimezone * info), info)
