// Software inventory: what runs on the board, as tool programs, package queries and files tell it.
// Output goes through files of fixed names; callers are served one at a time.

#include "network/Network.h"
#include "network/boundedCopy.h"
#include "platform/features.h"
#include "platform/sysConfig.h"

#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <utility>

namespace {

constexpr const char* versionFile = "/tmp/version.data.tmp";
constexpr const char* fileSystemFile = "/tmp/get_FS_version";
constexpr const char* buildStampFile = "/etc/zu_fs_version";
constexpr const char* fileSystemVersionFile = "/etc/fs-version";

constexpr const char* notAvailable = "n/a";

/// Bytes of an output text, the terminator included.
constexpr std::size_t textSize = 100;
constexpr std::size_t textLimit = textSize - 1;

// Where a tool program lies. In any other mode the command is a whole shell pipeline.
constexpr int pipelineMode = 0;
constexpr int activeMode = 1;
constexpr int platformMode = 2;
constexpr int upgradeMode = 3;

const char* directoryOf(int mode) {
    switch (mode) {
        case activeMode:
            return "/opt/kalvor/neroot/active/bin/";
        case platformMode:
            return "/opt/vantorix/bin/";
        case upgradeMode:
            return "/upgrade_root/opt/kalvor/neroot/current/bin/";
        default:
            return nullptr;
    }
}

bool exists(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0;
}

/// That a command fails shows in what it leaves in its file.
void run(const std::string& command) {
    [[maybe_unused]] const int status = std::system(command.c_str());
}

bool isEmpty(const char* text) { return text[0] == '\0'; }

/// A text without a place was reported by its reading.
void fillEmpty(char* text) {
    if (text != nullptr && isEmpty(text)) {
        copyBounded(text, notAvailable, textLimit);
    }
}

void removeLineEnd(char* line) {
    const std::size_t length = std::strlen(line);
    if (length != 0 && line[length - 1] == '\n') {
        line[length - 1] = '\0';
    }
}

/// Stores the first word of what tells the version of the file system.
void readFileSystemVersion(char* version) {
    if (exists(buildStampFile)) {
        run(std::string("sed -n 's/echo Filesystem based on .*_FS-//p' ") + buildStampFile + " > " +
            fileSystemFile);
    } else {
        run(std::string("sed -n 's/FS_VERSION=//p' ") + fileSystemVersionFile + " > " +
            fileSystemFile);
    }
    std::ifstream file(fileSystemFile);
    std::string word;
    file >> word;
    unlink(fileSystemFile);
    file.close();
    copyBounded(version, word.c_str(), textLimit);
}

// Component lists.

constexpr std::size_t commandLimit = 100;
constexpr std::size_t lineSize = 300;

/// With this feature the system software's version is managed as a whole.
constexpr int managedVersion = 5;

/// The component whose line carries the version of the system software.
constexpr const char* managerComponent = "olt_manager";

/// The output of a shell command, line by line, at most 299 characters each.
class CommandOutput {
public:
    explicit CommandOutput(const std::string& command) : stream(popen(command.c_str(), "r")) {}
    ~CommandOutput() { close(); }
    CommandOutput(const CommandOutput&) = delete;
    CommandOutput& operator=(const CommandOutput&) = delete;

    explicit operator bool() const { return stream != nullptr; }

    /// False at the end. The line comes without its end.
    bool next(std::string& line) {
        char buffer[lineSize] = {};
        if (stream == nullptr || std::fgets(buffer, sizeof buffer, stream) == nullptr) {
            return false;
        }
        removeLineEnd(buffer);
        line = buffer;
        return true;
    }

    /// Waits for the command. Whether it succeeded.
    bool close() {
        std::FILE* const open = std::exchange(stream, nullptr);
        return open != nullptr && pclose(open) == 0;
    }

private:
    std::FILE* stream;
};

/// The one line that a command answers with; empty when it fails or says nothing.
std::string answerOf(const std::string& command) {
    CommandOutput output(command);
    std::string line;
    output.next(line);
    return output.close() ? line : std::string();
}

/// Where the link in a line of a directory listing leads; empty when there is none.
std::string linkTarget(const std::string& listing) {
    constexpr const char* arrow = "-> ";
    const std::size_t place = listing.find(arrow);
    return place == std::string::npos ? std::string() : listing.substr(place + std::strlen(arrow));
}

/// Version text of the system software; known only where it is managed as a whole.
struct SystemVersion {
    bool isKnown = false;
    std::string text;
};

SystemVersion readSystemVersion() {
    SystemVersion version;
    if (isActive(managedVersion)) {
        const zuOMTable table;
        char text[lineSize] = {};
        version.isKnown = sysConfigOMApi::sysConfigGetSwVersion(text) == 0;
        version.text.assign(text, strnlen(text, sizeof text));
    }
    return version;
}

std::vector<std::string> applicationComponents(const SystemVersion& version) {
    std::vector<std::string> components;
    const std::string active = linkTarget(answerOf("ls /opt/kalvor/neroot -l |grep active"));
    const std::string providerQuery = "rpm -q --whatprovides " + active;
    if (active.empty() || providerQuery.size() > commandLimit) {
        return components;
    }
    const std::string package = answerOf(providerQuery);
    const std::string query = "rpm -q --requires " + package + " | grep \"=\"";
    if (package.empty() || query.size() > commandLimit) {
        return components;
    }
    CommandOutput output(query);
    std::string line;
    while (output.next(line)) {
        if (version.isKnown && isActive(managedVersion) && line.starts_with(managerComponent) &&
            line.size() + version.text.size() <= lineSize) {
            line += version.text;
        }
        components.push_back(line);
    }
    return components;
}

std::vector<std::string> platformComponents() {
    std::vector<std::string> components;
    const std::string package = answerOf("rpm -q --whatprovides dorn-medium");
    if (!package.empty()) {
        CommandOutput output("rpm -q --requires " + package);
        for (std::string line; output.next(line);) {
            components.push_back(line);
        }
    }
    return components;
}

/// Hands out the line at the index, and counts the index up. The end of a list is no failure: it is
/// told by the index, which is then -1.
int nextLine(const std::vector<std::string>& lines, std::mutex& guard, char* line, int* index) {
    if (line == nullptr) {
        *index = -1;
        return -1;
    }
    const std::lock_guard locked(guard);
    if (*index < 0 || static_cast<std::size_t>(*index) >= lines.size()) {
        *index = -1;
        return 0;
    }
    copyBounded(line, lines[static_cast<std::size_t>(*index)].c_str(), textLimit);
    ++*index;
    return 0;
}

}  // namespace

void Network::parseSoftwareInfo(const std::string& command, int mode, char* out) {
    if (reportIf(out == nullptr, "[networkBLE]: parseSoftwareInfo failed! data arg is NULL.\n")) {
        return;
    }
    *out = '\0';
    std::string line = command;
    if (const char* const directory = directoryOf(mode)) {
        line = directory + command;
        if (!exists(line)) {
            return;
        }
    }
    run(line + " > " + versionFile);
    if (std::FILE* const file = std::fopen(versionFile, "r")) {
        if (std::fgets(out, textSize, file) == nullptr) {
            *out = '\0';
        }
        std::fclose(file);
        out[textLimit] = '\0';
        removeLineEnd(out);
    } else {
        networkBleSyslog(LOG_ERR,
                         "[networkBLE]: parseSoftwareInfo failed! File (%s) can't be open\n",
                         versionFile);
    }
    run(std::string("rm ") + versionFile);
}

int Network::getSWData(char* product, char* buildDirectory, char* buildTime, char* upgradeProduct,
                       char* packageRelease, char* osRelease, char* fileSystem, char* bootLoader,
                       char* recoveryFileSystem) {
    return withSharedLock([&] {
        // Where a command leaves the text empty, the other one is asked, if there is one.
        const auto read = [&](char* text, int mode, const char* command,
                              const char* other = nullptr) {
            parseSoftwareInfo(command, mode, text);
            if (other != nullptr && text != nullptr && isEmpty(text)) {
                parseSoftwareInfo(other, mode, text);
            }
            fillEmpty(text);
        };
        read(product, activeMode, "show-product-version");
        read(buildDirectory, activeMode, "show-build-dir");
        read(buildTime, activeMode, "show-build-time");
        read(upgradeProduct, upgradeMode, "show-product-version");
        read(packageRelease, pipelineMode,
             "rpm -qf $(readlink -f /opt/kalvor/neroot/active/) --queryformat '%{release}\n'",
             "rpm -qa |grep  $(readlink /opt/kalvor/neroot/active) |xargs rpm -q --queryformat "
             "'%{release}\n'");
        read(osRelease, pipelineMode, "cat /etc/*release | grep -v '=' | head -n 1",
             "cat /etc/*release | grep 'DISTRIB_DESCRIPTION' | sed 's/DISTRIB_DESCRIPTION=//' | "
             "sed 's/\"//g'");
        if (!reportIf(fileSystem == nullptr,
                      "[networkBLE]: getSWData failed! One of input args is NULL. fileSystem: %p\n",
                      address(fileSystem))) {
            readFileSystemVersion(fileSystem);
            fillEmpty(fileSystem);
        }
        read(bootLoader, pipelineMode,
             "strings /dev/`grep 'U-boot Bin' /proc/mtd|awk -F ':' '{print $1}'`|head -n 5|grep -i "
             "boot");
        read(recoveryFileSystem, pipelineMode, "rpm -qa | grep recovery-FS- ");
        return 0;
    });
}

int Network::getPackageData(char* name, char* version) {
    return withSharedLock([&] {
        parseSoftwareInfo("show_package_act", platformMode, version);
        fillEmpty(version);
        if (!reportIf(name == nullptr,
                      "[networkBLE]: getPackageData failed! One of input args is NULL. name: %p\n",
                      address(name))) {
            copyBounded(name, "VANTORIX MSAN", textLimit);
        }
        return 0;
    });
}

int Network::getVerisonLineApl(char* line, int* index) {
    return withSharedLock([&] { return nextLine(applicationLines, componentsGuard, line, index); });
}

int Network::getVerisonLinePlat(char* line, int* index) {
    return withSharedLock([&] { return nextLine(platformLines, componentsGuard, line, index); });
}

void Network::initVersComp() {
    static std::atomic<bool> isInitialised = false;
    if (isInitialised.exchange(true)) {
        return;
    }
    const SystemVersion version = readSystemVersion();
    std::vector<std::string> application = applicationComponents(version);
    std::vector<std::string> platform = platformComponents();
    // Readers hold the shared lock, and this is called under none.
    const std::lock_guard guard(componentsGuard);
    applicationLines = std::move(application);
    platformLines = std::move(platform);
}
