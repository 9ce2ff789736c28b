// Calls of remote access, terminal and file-transfer services, web server, SNMP agent and software
// inventory.

#include "calls/ProcedureCall.h"

#include <fmt/core.h>

namespace {

constexpr std::uint32_t address = 0xc0000201;       // 192.0.2.1, 3221225985
constexpr std::uint32_t otherAddress = 0xc6336402;  // 198.51.100.2, 3325256706
constexpr std::uint32_t mask = 0xffffff00;          // 4294967040

/// Switches a service. Any value but 0 is on.
std::vector<ProcedureCall> switchCalls(unsigned int number, const char* procedure,
                                       const char* function, const char* on = "1",
                                       const char* off = "0") {
    return {
        statusCall(number, procedure, Argument().number(1), fmt::format("{}({})", function, on)),
        statusCall(number, procedure, Argument().number(0), fmt::format("{}({})", function, off)),
        statusCall(number, procedure, Argument().number(0x80000000),
                   fmt::format("{}({})", function, on))};
}

ProcedureCall flagCall(unsigned int number, const char* procedure, const std::string& call) {
    return fillCall(number, procedure, call,
                    [](Result& result) -> Result& { return result.flags(); },
                    {ProcedureCall::elsewhere});
}

ProcedureCall addRule(int flag) {
    return statusCall(32, "add_ra_rule", Argument().numbers(address, mask, flag, 9U),
                      fmt::format("networkAddRARule(3221225985, 4294967040, {}, 9)", flag));
}

ProcedureCall addTrap(int flag) {
    return statusCall(42, "snmptrap_add", Argument().text("public").numbers(address, flag),
                      fmt::format(R"(networkSnmptrapAdd("public", 3221225985, {}))", flag));
}

ProcedureCall addCommunity(int access, int flag) {
    return statusCall(47, "snmpcommunity_add", Argument().text("private").numbers(access, flag),
                      fmt::format(R"(networkSnmpCommunityAdd("private", {}, {}))", access, flag));
}

/// The index comes back as the exported function leaves it.
ProcedureCall versionLine(unsigned int number, const char* procedure, const char* function,
                          int index) {
    return {number,
            procedure,
            Argument().number(index),
            Filling::fill,
            fmt::format("{}({})", function, index),
            [index](const Circumstances& found) {
                Result result(found.telling);
                result.characters(100);
                return (found.fills ? result.numbers()
                                    : result.value(static_cast<std::uint32_t>(index)))
                    .units();
            },
            {0, ProcedureCall::elsewhere}};
}

std::vector<ProcedureCall> callsOfServices() {
    return {
        statusCall(2, "is_ftp_enabled", Argument(), "networkGetFtpState()"),
        statusCall(9, "set_http_sport", Argument().number(65535U), "networkSetHttpSPort(65535)"),
        statusCall(10, "set_http_sproto", Argument().number(2), "networkSetHttpSProto(2)"),
        fillCall(13, "get_http_info", "networkGetHttpInfo()", filled<rpcNetworkHttpInfo>,
                 {ProcedureCall::elsewhere}),
        addRule(1),
        addRule(0),
        statusCall(33, "remove_ra_rule", Argument().number(~0U), "networkRemoveRARule(4294967295)"),
        {34,
         "iterate_rules",
         Argument().number(3U),
         Filling::combined,
         "networkIterateRules(3)",
         [](const Circumstances& found) {
             return Result(found.telling)
                 .value(static_cast<std::uint32_t>(found.status))
                 .numbers(3)
                 .flags()
                 .units();
         },
         {ProcedureCall::elsewhere}},
        flagCall(36, "get_telnet", "networkGetTelnetConfig()"),
        flagCall(38, "get_ssh", "networkGetSshConfig()"),
        fillCall(60, "pty_get_max_sess", "networkGetPtyMaxSess()", filled<rpcPtyConfig>, {0, 4}),
        statusCall(61, "pty_set_max_sess", Argument().number(8U), "networkSetPtyMaxSess(8)"),
        {83,
         "http_get",
         Argument(),
         Filling::combined,
         "networkHttpGet()",
         [](const Circumstances& found) {
             return Result(found.telling)
                 .value(static_cast<std::uint32_t>(found.status))
                 .flags()
                 .units();
         },
         {ProcedureCall::elsewhere}},
    };
}

std::vector<ProcedureCall> callsOfAgent() {
    return {
        addTrap(1),
        addTrap(0),
        fillCall(43, "get_snmptrap", "networkGetSnmptrapConfig()", filled<rpcSnmpTrapConfig>, {0}),
        statusCall(44, "snmptrap_change", Argument().text("public").numbers(address, otherAddress),
                   R"(networkSnmptrapChange("public", 3221225985, 3325256706))"),
        statusCall(45, "snmptrap_port", Argument().number(162U), "networkSnmptrapPort(162)"),
        addCommunity(1, 1),
        addCommunity(2, 0),
        statusCall(48, "snmpcommunity_change", Argument().text("private").number(-1),
                   R"(networkSnmpCommunityChange("private", -1))"),
        fillCall(49, "snmpcommunity_get", "networkSnmpCommunityGet()",
                 filled<rpcSnmpCommunityConfig>, {0}),
        statusCall(50, "snmpsystem_change", Argument().text("a cabinet").number(2),
                   R"(networkSnmpSystemChange("a cabinet", 2))"),
        fillCall(51, "snmpsystem_get", "networkSnmpSystemGet()", filled<rpcSnmpSystemConfig>, {0}),
    };
}

std::vector<ProcedureCall> callsOfInventory() {
    return {
        fillCall(35, "get_sw_data", "networkGetSWData()", filled<rpcNetworkSWVersion>,
                 {0, 100, 200, 300, 400, 500, 600, 700, 800}),
        fillCall(46, "get_package_data", "networkGetPackageData()",
                 filled<rpcNetworkPackageVersion>, {0, 100}),
        versionLine(84, "get_sw_comp_apl_data", "networkGetVersionLineApl", 5),
        versionLine(84, "get_sw_comp_apl_data", "networkGetVersionLineApl", -1),
        versionLine(85, "get_sw_comp_plat_data", "networkGetVersionLinePlat", 6),
        versionLine(85, "get_sw_comp_plat_data", "networkGetVersionLinePlat", -1),
    };
}

}  // namespace

std::vector<ProcedureCall> callsOfManagement() {
    std::vector<ProcedureCall> calls;
    for (const std::vector<ProcedureCall>& part :
         {switchCalls(1, "ftp_enable", "networkFtpEnable"),
          switchCalls(11, "http_sserver_enable", "networkHttpSServerEnable", "true", "false"),
          switchCalls(12, "http_server_enable", "networkHttpServerEnable"),
          switchCalls(37, "telnet_enable", "networkTelnetEnable"),
          switchCalls(39, "ssh_enable", "networkSshEnable"),
          switchCalls(82, "http_server_set", "networkHttpServerSet"), callsOfServices(),
          callsOfAgent(), callsOfInventory()}) {
        calls.insert(calls.end(), part.begin(), part.end());
    }
    return calls;
}
