#pragma once

#include "board/switchboard/Configuration.h"
#include "board/switchboard/VlanDatabase.h"
#include "board/switchboard/codes.h"
#include "platform/handle.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace switchboard {

/// The one switch of the process: its configuration, its state, its log. May be used by any threads
/// at the same time.
class Switch {
public:
    /// Never destroyed, so that calls made while the process ends are answered.
    static Switch& instance();

    void configure(Configuration given);

    std::string managementInterface() const;

    /// Returns what the body makes of the database. Throws Failure, and what the body throws.
    template <class Body>
    auto read(Body body) {
        const std::lock_guard lock(mutex);
        return body(std::as_const(opened()));
    }

    /// Changes the database by the body: when it returns, the change is on the disk; when something
    /// throws, nothing has changed.
    template <class Body>
    void change(Body body) {
        const std::lock_guard lock(mutex);
        VlanDatabase changed = opened();
        body(changed);
        keep(std::move(changed));
    }

    void log(int level, const std::string& text) noexcept;

private:
    VlanDatabase& opened();
    VlanDatabase load(const std::filesystem::path& path);
    void keep(VlanDatabase changed);

    std::mutex mutex;                      ///< protects what follows; taken before `guard`
    std::filesystem::path file;            ///< empty: not configured
    std::optional<VlanDatabase> database;  ///< read on first use

    mutable std::mutex guard;  ///< protects what follows
    Configuration configuration;
};

/// Logs the exception that is being handled as a failure of the call; returns the call's result.
int report(const char* call) noexcept;

/// Runs a body that no exception may leave; returns the result of the call.
template <class Body>
int answer(const char* call, Body body) noexcept {
    try {
        body();
        return success;
    } catch (...) {
        return report(call);
    }
}

/// Throws Failure (noSuchDatabase) for the handle of another database than the default one.
void checkHandle(const zuHandle_t& handle);

}  // namespace switchboard
