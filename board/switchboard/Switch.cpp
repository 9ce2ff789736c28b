#include "board/switchboard/Switch.h"

#include "board/support/readFile.h"
#include "board/support/replaceFile.h"
#include "board/support/setAside.h"
#include "board/switchboard/Failure.h"
#include "board/switchboard/document.h"

#include <fmt/format.h>
#include <syslog.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <system_error>

namespace switchboard {

namespace {

namespace fs = std::filesystem;

constexpr const char* fileName = "switch.json";

}  // namespace

Switch& Switch::instance() {
    static Switch& object = *new Switch;
    return object;
}

void Switch::configure(Configuration given) {
    const std::lock_guard lock(mutex);
    file = given.stateDirectory.empty() ? fs::path() : given.stateDirectory / fileName;
    database.reset();
    const std::lock_guard configurationLock(guard);
    configuration = std::move(given);
}

std::string Switch::managementInterface() const {
    const std::lock_guard lock(guard);
    return configuration.managementInterface;
}

VlanDatabase& Switch::opened() {
    if (!database) {
        if (file.empty()) {
            throw Failure(notConfigured, "no state directory is configured");
        }
        try {
            database = load(file);
        } catch (const std::system_error& error) {
            throw Failure(storageFailed, error.what());
        }
    }
    return *database;
}

VlanDatabase Switch::load(const fs::path& path) {
    if (!fs::exists(path)) {
        return VlanDatabase();
    }
    const std::string text = support::readFile(path);
    try {
        return parseState(text);
    } catch (const NewerDocument& newer) {
        throw Failure(newerFile,
                      fmt::format("{} cannot be used: {}; install the newer release again, or move "
                                  "the file away to start from factory values",
                                  path.string(), newer.what()));
    } catch (const std::exception& damage) {
        const fs::path name = support::setAside(path);
        log(LOG_ERR,
            fmt::format("{} is damaged ({}): it is kept as {}, and factory values are used",
                        path.string(), damage.what(), name.string()));
        return VlanDatabase();
    }
}

void Switch::keep(VlanDatabase changed) {
    if (changed.state() == opened().state()) {
        return;
    }
    try {
        support::replaceFile(file, formatState(changed.state()));
    } catch (const std::system_error& error) {
        throw Failure(storageFailed, error.what());
    }
    database = std::move(changed);
}

void Switch::log(int level, const std::string& text) noexcept {
    try {
        Log receiver;
        {
            const std::lock_guard lock(guard);
            receiver = configuration.log;
        }
        if (receiver) {
            receiver(level, text);
        } else {
            ::syslog(level, "switch: %s", text.c_str());
        }
    } catch (...) {
        // A line that cannot be written must not keep a call from being answered.
    }
}

int report(const char* call) noexcept {
    Switch& theSwitch = Switch::instance();
    try {
        try {
            throw;
        } catch (const Failure& failure) {
            theSwitch.log(failure.level(), fmt::format("{}: {}", call, failure.what()));
            return failure.code();
        } catch (const std::exception& error) {
            theSwitch.log(LOG_ERR, fmt::format("{}: {}", call, error.what()));
        }
    } catch (...) {
        theSwitch.log(LOG_ERR, call);
    }
    return internalError;
}

void checkHandle(const zuHandle_t& handle) {
    if (std::any_of(std::begin(handle.bytes), std::end(handle.bytes),
                    [](unsigned char byte) { return byte != 0; })) {
        throw Failure(noSuchDatabase, "there is no VLAN database but the default one");
    }
}

}  // namespace switchboard
