#include "board/framework/boardIdentity.h"

#include "board/framework/Framework.h"
#include "platform/interfaces.h"
#include "platform/sysConfig.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <mutex>
#include <string>

namespace framework {

namespace {

/// Never destroyed, so that calls are answered while the process ends.
std::string& linuxName() {
    static std::string& name = *new std::string("mng0");
    return name;
}

/// Bytes that callers have room for, the terminator included.
constexpr std::size_t versionSize = 300;

constexpr int unknownVersion = 1;

/// Never destroyed, so that calls are answered while the process ends.
struct VersionFile {
    std::mutex mutex;
    std::filesystem::path path;
};

VersionFile& versionFile() {
    static VersionFile& file = *new VersionFile;
    return file;
}

bool isBlankOrControl(char c) { return static_cast<unsigned char>(c) <= ' '; }

/// The first line without blanks around it; empty when there is none.
std::string firstLine(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    const auto first = std::find_if_not(line.begin(), line.end(), isBlankOrControl);
    const auto last =
        std::find_if_not(line.rbegin(), std::make_reverse_iterator(first), isBlankOrControl);
    return {first, last.base()};
}

int softwareVersion(char* version) {
    std::filesystem::path file;
    {
        VersionFile& configured = versionFile();
        const std::lock_guard guard(configured.mutex);
        file = configured.path;
    }
    if (file.empty()) {
        logLine(LogImpl::levelDebug, "no file with the version of the system software is named");
        return unknownVersion;
    }
    const std::string line = firstLine(file);
    const bool hasControl = std::any_of(line.begin(), line.end(),
                                        [](char c) { return static_cast<unsigned char>(c) < ' '; });
    if (line.empty() || line.size() >= versionSize || hasControl) {
        logLine(LogImpl::levelWarning,
                "the version of the system software is not known: " + file.string() +
                    " does not begin with a line of 1 to 299 characters");
        return unknownVersion;
    }
    std::memcpy(version, line.c_str(), line.size() + 1);
    return 0;
}

}  // namespace

void nameManagementPort(const std::string& name) { linuxName() = name; }

void setSoftwareVersionFile(const std::filesystem::path& file) {
    VersionFile& configured = versionFile();
    const std::lock_guard guard(configured.mutex);
    configured.path = file;
}

}  // namespace framework

int interfaceMngGet(int* portId) {
    if (portId == nullptr) {
        return -1;
    }
    *portId = framework::managementPort;
    return 0;
}

int interfaceLinuxnameGet(int portId, int size, char* name) {
    const std::string& known = framework::linuxName();
    if (portId != framework::managementPort || name == nullptr || size < 0 ||
        known.size() >= static_cast<std::size_t>(size)) {
        return -1;
    }
    name[known.copy(name, known.size())] = '\0';
    return 0;
}

// The version needs no table to be queried; the object stands for the right to ask.
zuOMTable::zuOMTable() = default;
zuOMTable::~zuOMTable() = default;

int sysConfigOMApi::sysConfigGetSwVersion(char* version) {
    return version == nullptr ? framework::unknownVersion : framework::softwareVersion(version);
}
