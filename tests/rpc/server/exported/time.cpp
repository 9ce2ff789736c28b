// Fakes of the exported functions of clock, time zone and SNTP client.

#include "exported/ExportedCall.h"
#include "network/exports.h"

int networkSetTimeInfo(const char* text) { return ExportedCall("networkSetTimeInfo", text).end(); }

int networkGetTimeInfo(char* time) {
    return ExportedCall("networkGetTimeInfo").fill(OutputText{time, 30}).end();
}

int networkSetTimezoneOffset(int offset) {
    return ExportedCall("networkSetTimezoneOffset", offset).end();
}

int networkSetTimezoneName(const char* name) {
    return ExportedCall("networkSetTimezoneName", name).end();
}

int networkGetTimezoneInfo(int* offset, char* name) {
    return ExportedCall("networkGetTimezoneInfo").fill(offset, OutputText{name, 200}).end();
}

int networkGetSntpConfig(rpcSntpConfig* config) {
    return ExportedCall("networkGetSntpConfig").fill(config).end();
}

int networkGetSntpConfigWS(int* source, rpcSntpConfig* config) {
    return ExportedCall("networkGetSntpConfigWS").fill(source, config).end();
}

int networkGetSntpConfigWSHost(int* source, rpcSntpConfigHost* config) {
    return ExportedCall("networkGetSntpConfigWSHost").fill(source, config).end();
}

int networkUpdateSntpConfig(rpcSntpConfig* config) {
    return ExportedCall("networkUpdateSntpConfig", config).end();
}

int networkUpdateSntpConfigHost(rpcSntpConfigHost* config) {
    return ExportedCall("networkUpdateSntpConfigHost", config).end();
}

int networkGetSntpInfo(rpcSntpInfo* info) {
    return ExportedCall("networkGetSntpInfo").fill(info).end();
}

int networkGetSntpInfoWS(int* source, rpcSntpInfo* info) {
    return ExportedCall("networkGetSntpInfoWS").fill(source, info).end();
}

int networkGetSntpInfoWSHost(int* source, rpcSntpInfoHost* info) {
    return ExportedCall("networkGetSntpInfoWSHost").fill(source, info).end();
}

int networkSetSntpTimezoneDstStart(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                   int time) {
    return ExportedCall("networkSetSntpTimezoneDstStart", month, week, dayInWeek, time).end();
}

int networkSetSntpTimezoneDstEnd(unsigned int month, unsigned int week, unsigned int dayInWeek,
                                 int time) {
    return ExportedCall("networkSetSntpTimezoneDstEnd", month, week, dayInWeek, time).end();
}

int networkSetSntpTimezoneDstOffset(int dstOffset) {
    return ExportedCall("networkSetSntpTimezoneDstOffset", dstOffset).end();
}

int networkSetSntpTimezone(int offset, const char* linuxName) {
    return ExportedCall("networkSetSntpTimezone", offset, linuxName).end();
}

int networkGetSntpTimezoneInfo(rpcNetworkSntpTimezone* info) {
    return ExportedCall("networkGetSntpTimezoneInfo").fill(info).end();
}
