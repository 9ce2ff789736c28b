#include "cannedBoard.h"

#include <cstring>

namespace canned {

namespace {

bool answerSwitch(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_telnet_enable:
            state.telnet = as<bool_t>(argument) != 0;
            // As on the board.
            state.limits = {5, 10};
            return true;
        case rpc_network_get_telnet:
            as<bool_t>(result) = state.telnet ? TRUE : FALSE;
            return true;
        case rpc_network_ssh_enable:
            state.ssh = as<bool_t>(argument) != 0;
            return true;
        case rpc_network_get_ssh:
            as<bool_t>(result) = state.ssh ? TRUE : FALSE;
            return true;
        case rpc_network_ftp_enable:
            state.ftp = as<bool_t>(argument) != 0;
            return true;
        case rpc_network_is_ftp_enabled:
            as<int>(result) = state.ftp ? 0 : 1;
            if (board().behaviour.failHalfWay == "is_ftp_enabled") {
                as<int>(result) = 7;
            }
            return true;
        case rpc_network_pty_set_max_sess:
            state.limits.maxSessions = as<unsigned>(argument);
            if (state.limits.maxSessions == 0) {
                state.limits.maxSessions = 5;
            }
            return true;
        case rpc_network_pty_get_max_sess:
            as<rpcPtyConfig>(result) = state.limits;
            return true;
        default:
            return false;
    }
}

bool answerTimeZone(rpcproc_t procedure, void* argument, void* result) {
    rpcNetworkSntpTimezone& zone = board().state.zone;
    switch (procedure) {
        case rpc_network_set_sntp_timezone: {
            const auto& wanted = as<rpc_network_set_sntp_timezone_1_argument>(argument);
            zone.offset = wanted.offset;
            copy(zone.name, wanted.name);
            return true;
        }
        case rpc_network_set_sntp_timezone_dst_start: {
            const auto& date = as<rpc_network_set_sntp_timezone_dst_start_1_argument>(argument);
            zone.dstSMonth = static_cast<int>(date.month);
            zone.dstSWeek = static_cast<int>(date.week);
            zone.dstSDayInWeek = static_cast<int>(date.dayInWeek);
            zone.dstSTime = date.time;
            return true;
        }
        case rpc_network_set_sntp_timezone_dst_end: {
            const auto& date = as<rpc_network_set_sntp_timezone_dst_end_1_argument>(argument);
            zone.dstEMonth = static_cast<int>(date.month);
            zone.dstEWeek = static_cast<int>(date.week);
            zone.dstEDayInWeek = static_cast<int>(date.dayInWeek);
            zone.dstETime = date.time;
            if (board().behaviour.failHalfWay == "set_sntp_timezone_dst_end") {
                refuse(result);
            }
            return true;
        }
        case rpc_network_set_sntp_timezone_dst_offset:
            zone.dstOffset = as<int>(argument);
            return true;
        case rpc_network_get_sntp_timezone_info:
            as<rpcNetworkSntpTimezone>(result) = zone;
            return true;
        default:
            return false;
    }
}

}  // namespace

bool answerServices(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    if (procedure == rpc_network_get_time_info) {
        auto& answer = as<rpcNetworkTimeResult>(result);
        copy(answer.time, state.time);
        if (board().behaviour.failHalfWay == "get_time_info") {
            refuse(&answer.result);
        }
        return true;
    }
    if (procedure == rpc_network_set_time_info) {
        const std::string text = as<char*>(argument);
        const std::size_t blank = text.find(' ');
        state.time = text.substr(blank + 1) + ' ' + text.substr(0, blank);
        return true;
    }
    return answerSwitch(procedure, argument, result) || answerTimeZone(procedure, argument, result);
}

}  // namespace canned
