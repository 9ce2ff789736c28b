#pragma once

#include "board/support/StateFile.h"
#include "board/support/answer.h"
#include "board/switchboard/VlanDatabase.h"
#include "board/switchboard/switchCodes.h"
#include "board/switchboard/switchConfiguration.h"
#include "platform/handle.h"

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

    std::string managementInterface();

    /// Returns what the body makes of the database. Throws Failure, and what the body throws.
    template <class Body>
    auto read(Body body) {
        const std::lock_guard lock(mutex);
        return body(opened().content());
    }

    /// Changes the database by the body: when it returns, the change is on the disk; when something
    /// throws, nothing has changed.
    template <class Body>
    void change(Body body) {
        const std::lock_guard lock(mutex);
        VlanDatabase changed = opened().content();
        body(changed);
        keep(std::move(changed));
    }

    support::LogChannel log;

private:
    using StateFile = support::StateFile<VlanDatabase>;

    Switch();

    const StateFile& opened();
    void keep(VlanDatabase changed);

    std::mutex mutex;  ///< protects what follows
    Configuration configuration;
    std::optional<StateFile> state;  ///< read on first use
};

/// Runs a body that no exception may leave; returns the result of the call.
template <class Body>
int answer(const char* call, Body body) noexcept {
    return support::answer(call, internalError, Switch::instance().log, body);
}

/// Throws Failure (noSuchDatabase) for the handle of another database than the default one.
void checkHandle(const zuHandle_t& handle);

/// The state of the switch in `switch.json`: a JSON document, one line.
extern const support::StateFormat<VlanDatabase> switchFormat;

}  // namespace switchboard
