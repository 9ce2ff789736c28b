// Calls of clock, time zone and SNTP client.

#include "calls/ProcedureCall.h"

namespace {

const Argument addressesArgument =
    Argument().numbers(1, 0xc0000201U, 3, 1, 0xc0000202U, 4, 0, 0U, -7, -8);

const Argument hostsArgument = Argument()
                                   .number(1)
                                   .characters("ntp1.example.org", 256)
                                   .numbers(3, 1, 0)
                                   .characters("192.0.2.2", 256)
                                   .numbers(4, 0, 1)
                                   .characters("2001:db8::3", 256)
                                   .numbers(5, 6, 2)
                                   .characters("", 256)
                                   .numbers(-7, -8, -9);

/// A name has room for 199 characters, of which the first 99 travel.
Units zoneName(const Circumstances& found) {
    Units units = Result(found.telling).numbers().characters(200).units();
    units.resize(1 + 99);
    units.push_back(0);
    return units;
}

ProcedureCall setZoneOffset(int offset) {
    return statusCall(25, "set_timezone_offset", Argument().number(offset),
                      "networkSetTimezoneOffset(" + std::to_string(offset) + ")");
}

}  // namespace

std::vector<ProcedureCall> callsOfTime() {
    const Argument rule = Argument().numbers(10U, 5U, 7U, -200);
    return {
        fillCall(22, "sntp_info", "networkGetSntpInfo()", filled<rpcSntpInfo>, {0}),
        statusCall(23, "set_time_info", Argument().text("01/02/2024 03:04:05"),
                   R"(networkSetTimeInfo("01/02/2024 03:04:05"))"),
        {24,
         "get_time_info",
         Argument(),
         Filling::combined,
         "networkGetTimeInfo()",
         [](const Circumstances& found) {
             return Result(found.telling)
                 .characters(30)
                 .value(static_cast<std::uint32_t>(found.status))
                 .units();
         },
         {0}},
        setZoneOffset(-720),
        setZoneOffset(840),
        statusCall(26, "set_timezone_name", Argument().text("Europe/Zurich"),
                   R"(networkSetTimezoneName("Europe/Zurich"))"),
        {27,
         "get_timezone_info",
         Argument(),
         Filling::fill,
         "networkGetTimezoneInfo()",
         zoneName,
         {0, ProcedureCall::elsewhere}},
        statusCall(40, "sntp_update", addressesArgument,
                   "networkUpdateSntpConfig({1 [3221225985 3 1] [3221225986 4 0] [0 -7 -8]})"),
        fillCall(41, "sntp_get", "networkGetSntpConfig()", filled<rpcSntpConfig>, {0}),
        statusCall(62, "set_sntp_timezone_dst_start", rule,
                   "networkSetSntpTimezoneDstStart(10, 5, 7, -200)"),
        statusCall(63, "set_sntp_timezone_dst_end", rule,
                   "networkSetSntpTimezoneDstEnd(10, 5, 7, -200)"),
        statusCall(64, "set_sntp_timezone_dst_offset", Argument().number(-60),
                   "networkSetSntpTimezoneDstOffset(-60)"),
        statusCall(65, "set_sntp_timezone", Argument().number(-330).text("Asia/Kolkata"),
                   R"(networkSetSntpTimezone(-330, "Asia/Kolkata"))"),
        fillCall(66, "get_sntp_timezone_info", "networkGetSntpTimezoneInfo()",
                 filled<rpcNetworkSntpTimezone>, {0}),
        fillCall(86, "sntp_getws", "networkGetSntpConfigWS()", filled<rpcSntpConfigWS>, {0, 4}),
        fillCall(89, "sntp_infows", "networkGetSntpInfoWS()", filled<rpcSntpInfoWS>, {0, 4}),
        fillCall(97, "sntp_getws_host", "networkGetSntpConfigWSHost()", filled<rpcSntpConfigWSHost>,
                 {0, 4}),
        statusCall(98, "sntp_update_host", hostsArgument,
                   R"(networkUpdateSntpConfigHost({1 ["ntp1.example.org" 3 1 0])"
                   R"( ["192.0.2.2" 4 0 1] ["2001:db8::3" 5 6 2] ["" -7 -8 -9]}))"),
        fillCall(99, "sntp_infowshost", "networkGetSntpInfoWSHost()", filled<rpcSntpInfoWSHost>,
                 {0, 4}),
    };
}
