// Rows of the web server, the inventory, the factory settings and the entity itself.

#include "network/exports.h"
#include "network/fixedFiles.h"
#include "network/operations.h"

#include <memory>
#include <sstream>

namespace {

void withWebServer(fake::Platform& board) {
    // One has something to drain, the other nothing.
    board.ipc.semaphores["hassesKpiSem"] = {1};
    board.ipc.semaphores["hassesEventsSem"] = {0};
    singleton<Network>::instance().networkHttpServerSet(true);
}

void withEventCounter(fake::Platform& board) {
    board.ipc.semaphores["hassesKpiSem"] = {1};
    singleton<Network>::instance().semaf_init();
}

/// Of the commands, only those of the event server and of apache2 count.
std::vector<Operation> webServer() {
    return {
        Operation(
            EXPORTED(networkHttpServerSet, 1),
            "exclusiveLock system=0/-1 system system system=0 sleep? system=0 pthread_create=0 ~"),
        Operation(EXPORTED(networkHttpServerSet, 0),
                  "exclusiveLock system sem_open=0 sem_trywait=0 sem_trywait? sem_close=0 "
                  "sem_open=0 sem_trywait? sem_close=0 system system=0 system=0 sleep? system=0 ~")
            .as("Off")
            .on(withWebServer),
        Operation(EXPORTED_THAT_LOOKS(networkHttpGet, &buffers.flag), "sharedLock ~"),
        Operation(EXPORTED(networkSetHttpSPort, 443), "").returns(-1),
        Operation(EXPORTED(networkSetHttpSProto, Network::sprotocolTls), "").returns(-1),
        Operation(EXPORTED(networkHttpSServerEnable, true), "").returns(-1),
        Operation(EXPORTED(networkHttpServerEnable, 1), "").returns(-1),
        Operation(EXPORTED(networkGetHttpInfo, &buffers.http), "").returns(-1),
        Operation(ENTITY(isHttpServerInstalled), "system=0").returns(1),
        Operation(ENTITY(createHassesServerDir), "system=0").returns(1),
        Operation(ENTITY(hassComm_init), "pthread_create=0"),
        Operation(ENTITY(hassComm_createThread), "pthread_create=42"),
        Operation(ENTITY(semaf_init), "sem_open=0").on(withEventCounter),
        Operation(ENTITY(semaf_checkHassesSem), "sem_getvalue=0").on(withEventCounter).returns(1),
    };
}

// Software inventory. No failure of a program is one of the operation.

/// Every command leaves a line in the output file, and that is removed again.
void withPrograms(fake::Platform& board) {
    const auto files = std::make_shared<FixedFiles>();
    const std::string active = "/opt/kalvor/neroot/active/bin/";
    const std::string tools[] = {active + "show-product-version", active + "show-build-dir",
                                 active + "show-build-time",
                                 "/upgrade_root/opt/kalvor/neroot/current/bin/show-product-version",
                                 "/opt/vantorix/bin/show_package_act"};
    board.programs.files = {std::begin(tools), std::end(tools)};
    board.programs.files.insert("/etc/zu_fs_version");
    std::vector<std::string> commands(std::begin(tools), std::end(tools));
    commands.insert(
        commands.end(),
        {"rpm -qf $(readlink -f /opt/kalvor/neroot/active/) --queryformat '%{release}\n'",
         "cat /etc/*release | grep -v '=' | head -n 1",
         "strings /dev/`grep 'U-boot Bin' /proc/mtd|awk -F ':' '{print $1}'`|head -n 5|grep -i "
         "boot",
         "rpm -qa | grep recovery-FS- "});
    for (const std::string& command : commands) {
        board.programs.actions[command + " > /tmp/version.data.tmp"] = [files] {
            files->writeOutput("line\n");
        };
    }
    board.programs.actions["rm /tmp/version.data.tmp"] = [files] { files->removeOutput(); };
    board.programs.actions
        ["sed -n 's/echo Filesystem based on .*_FS-//p' /etc/zu_fs_version > "
         "/tmp/get_FS_version"] = [files] { files->writeFileSystemVersion("7.3\n"); };
}

std::vector<Operation> inventory() {
    const std::string tool = "stat=0 system=0 system=0";
    return {
        Operation(EXPORTED(networkGetSWData, buffers.texts[0], buffers.texts[1], buffers.texts[2],
                           buffers.texts[3], buffers.texts[4], buffers.texts[5], buffers.texts[6],
                           buffers.texts[7], buffers.texts[8]),
                  "sharedLock " + tool + " " + tool + " " + tool + " " + tool +
                      " system=0 system=0 system=0 system=0 " + tool +
                      " system=0 system=0 system=0 ~")
            .on(withPrograms),
        Operation(EXPORTED(networkGetPackageData, buffers.texts[0], buffers.texts[1]),
                  "sharedLock " + tool + " ~")
            .on(withPrograms),
        Operation(EXPORTED(networkGetVersionLineApl, buffers.texts[0], &buffers.number),
                  "sharedLock ~"),
        Operation(EXPORTED(networkGetVersionLinePlat, buffers.texts[0], &buffers.number),
                  "sharedLock ~"),
    };
}

// Factory settings, behind the reading of the component lists.

void withWebServerToOffer(fake::Platform& board) {
    singleton<Network>::instance().applyDefaultSettings();
    board.product.supportedFeatures.insert("httpserver");
}

void whileClearing(fake::Platform& board) {
    withWebServerToOffer(board);
    board.product.isClearConfigInProgress = true;
}

/// These answer 1 when every call for a group has succeeded; the web server does not count.
std::vector<Operation> defaults() {
    const std::string groups =
        "varoUpdateSntpTimeZone=0 varoDefTelnetSrv=0 isActive? varoUpdateTelnetSrv=0 "
        "varoDefSshSrv=0 varoUpdateSshSrv=0 varoDefFtpSrv=0 varoUpdateFtpSrv=0 varoDefSubag=0 "
        "varoUpdateSubag=0 varoDefSnmpCommunity=0 varoUpdateSnmpCommunity=0 varoDefSnmpSystem=0 "
        "varoUpdateSnmpSystem=0 varoDefNtpHost=0 varoUpdateNtpHost=0";
    return {
        Operation(ENTITY(applyDefaultSettings),
                  groups + " isClearConfigInProgress? varoUpdateNtpHost=0 isClearConfigInProgress? "
                           "varoDefDnsWS=0 varoUpdateDnsWS=0 varoUpdateDnsWS=0 varoDefDns6=0 "
                           "varoUpdateDns6=0 varoUpdateDns6=0 varoDefAcs=0 isActive? "
                           "varoUpdateAcs=0 varoUpdateAcs=0 isFeatureSupported? exclusiveLock=1 "
                           "system=1 system=1 system=1 system=1 sleep? system=1 pthread_create=1 ~")
            .on(withWebServerToOffer)
            .returns(1),
        Operation(ENTITY(applyDefaultSettings),
                  groups + " isClearConfigInProgress? isClearConfigInProgress?")
            .as("WhileClearing")
            .on(whileClearing)
            .returns(1),
    };
}

/// A list in the bridge.
void withRule(fake::Platform&) { networkAddRARule(0xc0000200, 0xffffff00, 1, 0); }

/// These answer 1 whatever becomes of the remote-access list.
std::vector<Operation> lifecycle() {
    return {
        Operation(ENTITY(start),
                  "interfaceMngGet=1 interfaceLinuxnameGet=1 createACL=1 createRule=1 "
                  "addCondition=1 fflush? shelfIdChanged? externalMessage? pthread_create=1")
            .returns(1),
        Operation(ENTITY(stop),
                  "delCondition=1 delRuleById=1 deleteACL=1 shelfIdChanged? externalMessage?")
            .on(withRule)
            .returns(1),
        Operation(entityCall("externalMessage",
                             [](Network& network) {
                                 std::ostringstream reply;
                                 network.externalMessage("varoLib_severity", "7", &reply);
                                 return 0;
                             }),
                  "varoGetInternalConfig=0 varoUpdateInternalConfig=0"),
    };
}

}  // namespace

std::vector<Operation> boardOperations() {
    return joined({webServer(), inventory(), defaults(), lifecycle()});
}
