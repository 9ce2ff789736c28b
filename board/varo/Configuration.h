#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "board/varo/hostAppliers.h"

namespace varo {

/// Receives the library's log lines: the level, 0 (emergency) to 7 (debug), and the text without a
/// line end. It is called from any thread, also from several at the same time, and must not call
/// the library.
using Log = std::function<void(int level, const std::string& text)>;

/// What the host process tells the library about its surroundings.
struct Configuration {
    /// Existing directory that keeps the record store, file name `varo.db`, across restarts.
    std::filesystem::path stateDirectory;
    /// File in the form of resolv.conf(5) that the resolver settings in force are written to.
    /// Empty: they are stored only.
    std::filesystem::path resolverFile;
    /// Empty: lines go to syslog(3).
    Log log;
    /// What puts the settings of services into force.
    Appliers appliers{};
};

/// To be called before the first call of the library, which fails until then. Directory and file
/// are taken when the store is opened: a later call counts from the next varoLibInit after a
/// varoLibDestroy. The log function counts at once.
void configure(Configuration configuration);

}  // namespace varo
