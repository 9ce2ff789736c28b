#include "network/fixedFiles.h"
#include "network/operations.h"

#include <net/if.h>

#include <memory>
#include <sstream>

namespace {

/// Room for whatever the operations fill.
struct Buffers {
    int index;
    unsigned int numbers[3];
    bool flag;
    char texts[9][100];
} buffers{};

void asItIs(fake::Platform&) { buffers = {}; }

/// An address of the management port's, and an ONT's interface that is up.
void withOnt(fake::Platform& board) {
    board.addressing.interfaces["mng0"] = {0xc000020a, 0xffffff00};
    board.addressing.macAddresses["mng0"] = {2, 0, 0, 0, 0, 7};
    board.ont.flags = IFF_UP | IFF_BROADCAST;
    board.ont.address = 0xc0000205;
    board.ont.netmask = 0xffffff00;
}

std::vector<Operation> ont() {
    return {
        {"setOntMng",
         withOnt,
         [](Network& network) { return network.setOntMng(0xc0000206, 0xffffff00, 77); },
         {{"sharedLock", -1},
          {"varoGetDhcp", 0},
          {"interfaceMngGet", 0},
          {"interfaceLinuxnameGet", 0},
          {"varoGetIfcMAC", 0},
          {"varoGetInterface", 0},
          {"socket", -1},
          {"ioctl SIOCSIFADDR", -1},
          {"ioctl SIOCSIFNETMASK", -1},
          {"ioctl SIOCGIFFLAGS", -1},
          {"ioctl SIOCSIFFLAGS", -1},
          {"mngSystemMacGet", -1},
          {"ioctl SIOCSIFHWADDR", -1},
          {"ioctl SIOCSIFFLAGS", -1},
          {"gponOntMngVlanSet", -1},
          {"close", 0}}},
        {"setOntMngOff",
         withOnt,
         [](Network& network) { return network.setOntMng(0, 0, 77); },
         {{"sharedLock", -1},
          {"varoGetDhcp", 0},
          {"interfaceMngGet", 0},
          {"interfaceLinuxnameGet", 0},
          {"varoGetIfcMAC", 0},
          {"varoGetInterface", 0},
          {"socket", -1},
          {"ioctl SIOCSIFADDR", -1},
          {"ioctl SIOCGIFFLAGS", -1},
          {"ioctl SIOCSIFFLAGS", -1},
          {"mngSystemMacGet", -1},
          {"ioctl SIOCSIFHWADDR", -1},
          {"gponOntMngVlanSet", -1},
          {"close", 0}}},
        {"getOntMng",
         withOnt,
         [](Network& network) {
             return network.getOntMng(&buffers.numbers[0], &buffers.numbers[1],
                                      &buffers.numbers[2]);
         },
         {{"socket", -1},
          {"ioctl SIOCGIFADDR", -1},
          {"ioctl SIOCGIFNETMASK", -1},
          {"gponOntMngVlanGet", -1},
          {"close", 0}}},
    };
}

// The web server set.

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
        {"networkHttpServerSet",
         asItIs,
         [](Network& network) { return network.networkHttpServerSet(true); },
         {{"exclusiveLock", -1},
          {"system", 0, -1},
          {"system", -1},
          {"system", -1},
          {"system", 0},
          {"system", 0},
          {"pthread_create", 0}}},
        {"networkHttpServerSetOff",
         withWebServer,
         [](Network& network) { return network.networkHttpServerSet(false); },
         {{"exclusiveLock", -1},
          {"system", -1},
          {"sem_open", 0},
          {"sem_trywait", 0},
          {"sem_close", 0},
          {"sem_open", 0},
          {"sem_close", 0},
          {"system", -1},
          {"system", 0},
          {"system", 0},
          {"system", 0}}},
        {"networkHttpGet",
         asItIs,
         [](Network& network) { return network.networkHttpGet(buffers.flag); },
         {{"sharedLock", -1}}},
        {"isHttpServerInstalled",
         asItIs,
         [](Network& network) { return network.isHttpServerInstalled() ? 1 : 0; },
         {{"system", 0}},
         1},
        {"createHassesServerDir",
         asItIs,
         [](Network& network) { return network.createHassesServerDir(); },
         {{"system", 0}},
         1},
        {"hassComm_init",
         asItIs,
         [](Network& network) { return network.hassComm_init(); },
         {{"pthread_create", 0}}},
        {"hassComm_createThread",
         asItIs,
         [](Network& network) { return network.hassComm_createThread(); },
         {{"pthread_create", 42}}},
        {"semaf_init",
         withEventCounter,
         [](Network& network) { return network.semaf_init(); },
         {{"sem_open", 0}}},
        {"semaf_checkHassesSem",
         withEventCounter,
         [](Network& network) { return network.semaf_checkHassesSem(); },
         {{"sem_getvalue", 0}},
         1},
    };
}

// Software inventory. No failure of a program is one of the operation.

/// Every command leaves a line in the output file, and that is removed again.
void withPrograms(fake::Platform& board) {
    buffers = {};
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
    return {
        {"getSWData",
         withPrograms,
         [](Network& network) {
             auto& texts = buffers.texts;
             return network.getSWData(texts[0], texts[1], texts[2], texts[3], texts[4], texts[5],
                                      texts[6], texts[7], texts[8]);
         },
         {{"sharedLock", -1},
          // Tool programs.
          {"stat", 0},
          {"system", 0},
          {"system", 0},
          {"stat", 0},
          {"system", 0},
          {"system", 0},
          {"stat", 0},
          {"system", 0},
          {"system", 0},
          {"stat", 0},
          {"system", 0},
          {"system", 0},
          // Releases.
          {"system", 0},
          {"system", 0},
          {"system", 0},
          {"system", 0},
          // The file system.
          {"stat", 0},
          {"system", 0},
          // Boot loader and recovery.
          {"system", 0},
          {"system", 0},
          {"system", 0},
          {"system", 0}}},
        {"getPackageData",
         withPrograms,
         [](Network& network) {
             return network.getPackageData(buffers.texts[0], buffers.texts[1]);
         },
         {{"sharedLock", -1}, {"stat", 0}, {"system", 0}, {"system", 0}}},
        {"getVerisonLineApl",
         asItIs,
         [](Network& network) {
             return network.getVerisonLineApl(buffers.texts[0], &buffers.index);
         },
         {{"sharedLock", -1}}},
        {"getVerisonLinePlat",
         asItIs,
         [](Network& network) {
             return network.getVerisonLinePlat(buffers.texts[0], &buffers.index);
         },
         {{"sharedLock", -1}}},
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

/// Calls that fill and write a group, each of which fails it.
std::vector<ImportedCall> groups() {
    std::vector<ImportedCall> calls = {{"varoUpdateSntpTimeZone", 0}};
    for (const char* const group :
         {"TelnetSrv", "SshSrv", "FtpSrv", "Subag", "SnmpCommunity", "SnmpSystem", "NtpHost"}) {
        calls.emplace_back((std::string("varoDef") + group).c_str(), 0);
        calls.emplace_back((std::string("varoUpdate") + group).c_str(), 0);
    }
    return calls;
}

std::vector<ImportedCall> allGroups() {
    std::vector<ImportedCall> calls = groups();
    calls.insert(calls.end(), {{"varoUpdateNtpHost", 0},
                               {"varoDefDnsWS", 0},
                               {"varoUpdateDnsWS", 0},
                               {"varoUpdateDnsWS", 0},
                               {"varoDefDns6", 0},
                               {"varoUpdateDns6", 0},
                               {"varoUpdateDns6", 0},
                               {"varoDefAcs", 0},
                               {"varoUpdateAcs", 0},
                               {"varoUpdateAcs", 0},
                               // The web server does not count.
                               {"exclusiveLock", 1},
                               {"system", 1},
                               {"system", 1},
                               {"system", 1},
                               {"system", 1},
                               {"system", 1},
                               {"pthread_create", 1}});
    return calls;
}

/// These answer 1 when every call for a group has succeeded.
std::vector<Operation> defaults() {
    return {
        {"applyDefaultSettings", withWebServerToOffer,
         [](Network& network) { return network.applyDefaultSettings(); }, allGroups(), 1},
        {"applyDefaultSettingsWhileClearing", whileClearing,
         [](Network& network) { return network.applyDefaultSettings(); }, groups(), 1},
    };
}

std::vector<Operation> messages() {
    return {
        {"externalMessage",
         asItIs,
         [](Network& network) {
             std::ostringstream reply;
             network.externalMessage("varoLib_severity", "7", &reply);
             return 0;
         },
         {{"varoGetInternalConfig", 0}, {"varoUpdateInternalConfig", 0}}},
    };
}

}  // namespace

std::vector<Operation> boardOperations() {
    std::vector<Operation> rows;
    for (const auto& group : {ont(), webServer(), inventory(), defaults(), messages()}) {
        rows.insert(rows.end(), group.begin(), group.end());
    }
    return rows;
}
