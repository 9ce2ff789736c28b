#include "cannedBoard.h"

#include <tuple>

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
            return give<bool_t>(result, state.telnet ? TRUE : FALSE);
        case rpc_network_ssh_enable:
            return take<bool_t>(state.ssh, argument);
        case rpc_network_get_ssh:
            return give<bool_t>(result, state.ssh ? TRUE : FALSE);
        case rpc_network_ftp_enable:
            return take<bool_t>(state.ftp, argument);
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
            return give<rpcPtyConfig>(result, state.limits);
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
            std::tie(zone.dstSMonth, zone.dstSWeek, zone.dstSDayInWeek, zone.dstSTime) =
                std::tie(date.month, date.week, date.dayInWeek, date.time);
            return true;
        }
        case rpc_network_set_sntp_timezone_dst_end: {
            const auto& date = as<rpc_network_set_sntp_timezone_dst_end_1_argument>(argument);
            std::tie(zone.dstEMonth, zone.dstEWeek, zone.dstEDayInWeek, zone.dstETime) =
                std::tie(date.month, date.week, date.dayInWeek, date.time);
            if (board().behaviour.failHalfWay == "set_sntp_timezone_dst_end") {
                refuse(result);
            }
            return true;
        }
        case rpc_network_set_sntp_timezone_dst_offset:
            return take<int>(zone.dstOffset, argument);
        case rpc_network_get_sntp_timezone_info:
            return give<rpcNetworkSntpTimezone>(result, zone);
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
