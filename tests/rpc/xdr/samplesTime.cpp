// Samples of the records of clock, time zone and SNTP.

#include "network/rpc/records.h"
#include "samples.h"

namespace {

const rpcSntpSrv server = {.ipAddress = address(10, 0, 0, 123), .ntpVersion = 4, .priority = 1};
const rpcSntpSrvHost hostServer = {
    .host = "ntp1.example.net", .ntpVersion = 4, .priority = 1, .addressType = 2};
const rpcSntpClientInfo client = {.state = 2,
                                  .mode = 1,
                                  .leapIndicator = 3,
                                  .stratum = 4,
                                  .pollInterval = 64,
                                  .offset = -1500,
                                  .referenceAddress = address(200, 0, 0, 123),
                                  .delay = 2300,
                                  .dispersion = 990,
                                  .lastUpdate = "2024-02-29 23:59:58"};
const rpcSntpClientInfoHost hostClient = {.state = 2,
                                          .mode = 1,
                                          .leapIndicator = 3,
                                          .stratum = 4,
                                          .pollInterval = 64,
                                          .offset = -1500,
                                          .referenceHost = "ntp1.example.net",
                                          .delay = 2300,
                                          .dispersion = 990,
                                          .lastUpdate = "2024-02-29 23:59:58"};
const rpcSntpClientUnicastInfo unicast = {.pollInterval = 32, .timeout = 5, .retries = 3};
const rpcSntpSrvInfo serverState = {.state = 3,
                                    .ipAddress = address(200, 0, 0, 123),
                                    .stratum = 2,
                                    .reachability = 255,
                                    .offset = -7,
                                    .delay = 2300};
const rpcSntpSrvInfoHost hostServerState = {.state = 3,
                                            .host = "ntp1.example.net",
                                            .stratum = 2,
                                            .reachability = 255,
                                            .offset = -7,
                                            .delay = 2300};
const rpcSntpInfo info = {.client = client,
                          .unicast = unicast,
                          .servers = {serverState,
                                      {.state = 1,
                                       .ipAddress = address(10, 0, 0, 124),
                                       .stratum = 5,
                                       .reachability = 254,
                                       .offset = 11,
                                       .delay = 12},
                                      {}}};
const rpcSntpInfoHost hostInfo = {.client = hostClient,
                                  .unicast = unicast,
                                  .servers = {hostServerState,
                                              {},
                                              {},
                                              {.state = 1,
                                               .host = "2001:db8::123",
                                               .stratum = 5,
                                               .reachability = 254,
                                               .offset = 11,
                                               .delay = 12}}};
const rpcSntpConfig config = {
    .mode = 1,
    .servers = {server, {.ipAddress = address(10, 0, 0, 124), .ntpVersion = 3, .priority = 0}, {}}};
const rpcSntpConfigHost hostConfig = {
    .mode = 1,
    .servers = {hostServer,
                {},
                {},
                {.host = "10.0.0.124", .ntpVersion = 3, .priority = 0, .addressType = 1}}};

}  // namespace

std::vector<Sample> samplesOfTime() {
    return {
        sample<rpcNetworkNtpInfo>("rpcNetworkNtpInfo", {.enabled = 5, .value = 0xfffffffe}),
        sample<rpcNetworkNtpServerResult>(
            "rpcNetworkNtpServerResult",
            {.ipAddress = address(10, 0, 0, 123), .value = 9, .result = rpcNetworkFailed}),
        sample<rpcNetworkTimeResult>(
            "rpcNetworkTimeResult",
            {.time = "2024-02-29 23:59:58", .result = rpcNetworkUnknownAddressType}),
        sample<rpcNetworkTimezone>("rpcNetworkTimezone", {.offset = -180, .name = "MSK"}),
        sample<rpcNetworkSntpTimezone>("rpcNetworkSntpTimezone", {.name = "CET",
                                                                  .offset = 60,
                                                                  .dstOffset = -61,
                                                                  .dstSMonth = 3,
                                                                  .dstSWeek = 5,
                                                                  .dstSDayInWeek = 7,
                                                                  .dstSTime = 120,
                                                                  .dstEMonth = 10,
                                                                  .dstEWeek = 4,
                                                                  .dstEDayInWeek = 6,
                                                                  .dstETime = 180,
                                                                  .preset = 1}),
        sample("rpcSntpSrv", server),
        sample("rpcSntpSrvHost", hostServer),
        sample("rpcSntpConfig", config),
        sample("rpcSntpConfigHost", hostConfig),
        sample("rpcSntpClientInfo", client),
        sample("rpcSntpClientInfoHost", hostClient),
        sample("rpcSntpClientUnicastInfo", unicast),
        sample("rpcSntpSrvInfo", serverState),
        sample("rpcSntpSrvInfoHost", hostServerState),
        sample("rpcSntpInfo", info),
        sample("rpcSntpInfoHost", hostInfo),
        sample<rpcSntpInfoWS>("rpcSntpInfoWS", {.result = -1, .info = info}),
        sample<rpcSntpInfoWSHost>("rpcSntpInfoWSHost", {.result = -1, .info = hostInfo}),
        sample<rpcSntpConfigWS>("rpcSntpConfigWS", {.result = -1, .config = config}),
        sample<rpcSntpConfigWSHost>("rpcSntpConfigWSHost", {.result = -1, .config = hostConfig}),
        sample<rpc_network_set_sntp_timezone_dst_start_1_argument>(
            "rpc_network_set_sntp_timezone_dst_start_1_argument",
            {.month = 3, .week = 5, .dayInWeek = 7, .time = -120}),
        sample<rpc_network_set_sntp_timezone_dst_end_1_argument>(
            "rpc_network_set_sntp_timezone_dst_end_1_argument",
            {.month = 10, .week = 4, .dayInWeek = 6, .time = 180}),
        sample<rpc_network_set_sntp_timezone_1_argument>("rpc_network_set_sntp_timezone_1_argument",
                                                         {.offset = -180, .name = text("MSK")}),
    };
}
