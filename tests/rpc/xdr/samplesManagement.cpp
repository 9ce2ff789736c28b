// Samples of the records of the management services and of the software inventory.

#include "network/rpc/records.h"
#include "samples.h"

std::vector<Sample> samplesOfManagement() {
    const rpcSnmpManager manager = {.ipAddress = address(10, 0, 0, 162), .community = "trap"};
    const rpcSnmpCommunity community = {.name = "public", .access = rpcSnmpCommunityReadOnly};
    return {
        sample<rpcNetworkSprotocol>("rpcNetworkSprotocol", rpcSprotocolBoth),
        sample<rpcSnmpCommunityAccess>("rpcSnmpCommunityAccess", rpcSnmpCommunityNone),
        sample<rpcSnmpSystemSelector>("rpcSnmpSystemSelector", rpcSnmpSystemName),
        sample<rpcTelnetConfig>("rpcTelnetConfig", 5),
        sample<rpcSshConfig>("rpcSshConfig", FALSE),
        sample<rpcNetworkHttpInfo>("rpcNetworkHttpInfo", {.httpEnabled = FALSE,
                                                          .httpsEnabled = 5,
                                                          .httpsPort = 8443,
                                                          .httpsProtocol = rpcSprotocolBoth}),
        sample<rpcNetworkHttpResult>("rpcNetworkHttpResult",
                                     {.result = rpcNetworkFailed, .enabled = TRUE}),
        sample<rpcNetworkSWVersion>("rpcNetworkSWVersion",
                                    {.product = "product",
                                     .buildDirectory = "build directory",
                                     .buildTime = "build time",
                                     .upgradeProduct = "upgrade product",
                                     .packageRelease = "package release",
                                     .osRelease = "os release",
                                     .fileSystem = "file system",
                                     .bootLoader = "boot loader",
                                     .recoveryFileSystem = "recovery file system"}),
        sample<rpcNetworkSWVersionComp>("rpcNetworkSWVersionComp",
                                        {.line = "component 1.2.3", .index = -1}),
        sample<rpcNetworkPackageVersion>("rpcNetworkPackageVersion",
                                         {.name = "shelf", .release = "4.7-12"}),
        sample<rpcPtyConfig>("rpcPtyConfig", {.maxSessions = 16, .value = 3}),
        sample("rpcSnmpManager", manager),
        sample<rpcSnmpTrapConfig>(
            "rpcSnmpTrapConfig",
            {.managers = {manager,
                          {.ipAddress = address(10, 0, 0, 163), .community = "second"},
                          {},
                          {},
                          {},
                          {},
                          {},
                          {},
                          {},
                          {.ipAddress = address(10, 0, 0, 171), .community = "tenth"}},
             .port = 162}),
        sample("rpcSnmpCommunity", community),
        sample<rpcSnmpCommunityConfig>(
            "rpcSnmpCommunityConfig",
            {.communities = {community,
                             {.name = "private", .access = rpcSnmpCommunityReadWrite},
                             {.name = "", .access = rpcSnmpCommunityNone},
                             {.name = "", .access = rpcSnmpCommunityNone},
                             {.name = "", .access = rpcSnmpCommunityNone},
                             // All 32 characters are text: no terminating zero.
                             {.name = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a',
                                       'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'l',
                                       'm', 'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v'},
                              .access = rpcSnmpCommunityReadOnly}}}),
        sample<rpcSnmpSystemConfig>(
            "rpcSnmpSystemConfig",
            {.contact = "noc@example.net", .location = "rack 7", .name = "shelf-12"}),
        sample<rpc_network_snmptrap_add_1_argument>(
            "rpc_network_snmptrap_add_1_argument",
            {.community = text("trap"), .ipAddress = address(10, 0, 0, 162), .flag = TRUE}),
        sample<rpc_network_snmptrap_change_1_argument>("rpc_network_snmptrap_change_1_argument",
                                                       {.community = text("traps"),
                                                        .oldAddress = address(10, 0, 0, 162),
                                                        .newAddress = address(10, 0, 0, 163)}),
        sample<rpc_network_snmpcommunity_add_1_argument>(
            "rpc_network_snmpcommunity_add_1_argument",
            {.name = text("public"), .access = rpcSnmpCommunityReadWrite, .flag = TRUE}),
        sample<rpc_network_snmpcommunity_change_1_argument>(
            "rpc_network_snmpcommunity_change_1_argument",
            {.name = text("private"), .access = rpcSnmpCommunityNone}),
        sample<rpc_network_snmpsystem_change_1_argument>(
            "rpc_network_snmpsystem_change_1_argument",
            {.text = text("rack 7, row 12"), .selector = rpcSnmpSystemLocation}),
    };
}
