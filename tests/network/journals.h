#pragma once

#include <string>
#include <vector>

/// What an expected journal is put together from: single entries, and lists of them that stand for
/// a step which several operations share.
using Entries = std::vector<std::string>;

inline void append(Entries& all, const std::string& entry) { all.push_back(entry); }
inline void append(Entries& all, const Entries& entries) {
    all.insert(all.end(), entries.begin(), entries.end());
}

template <class... Parts>
Entries sequence(const Parts&... parts) {
    Entries all;
    (append(all, parts), ...);
    return all;
}

/// What happens under a lock.
template <class... Parts>
Entries exclusively(const Parts&... parts) {
    return sequence("exclusiveLock", parts..., "~exclusiveLock");
}
template <class... Parts>
Entries sharing(const Parts&... parts) {
    return sequence("sharedLock", parts..., "~sharedLock");
}

/// What a refused lock leaves.
inline Entries refused(const std::string& lock) {
    return {lock + " -> refused", R"(Log(1): Network BLE: Lock cant be obtained.\n)"};
}

/// A line of the system log, all of which begin and end alike.
inline std::string logged(const std::string& level, const std::string& text) {
    std::string entry = "syslog(";
    entry += level;
    entry += R"(, "[networkBLE]: )";
    entry += text;
    entry += R"(\n"))";
    return entry;
}
inline std::string error(const std::string& text) { return logged("3", text); }
inline std::string trace(const std::string& text) { return logged("7", text); }

/// The DHCP record is written with these switches and this circuit id, and the operation tells.
inline Entries dhcpWritten(const std::string& operation, const std::string& switches,
                           const std::string& circuitId, int status = 0) {
    const std::string result = std::to_string(status);
    return {"varoUpdateDhcp({selector=2 " + switches + " circuitId=\"" + circuitId + "\"}) -> " +
                result,
            trace(operation + ": return value: " + result)};
}

/// The framework-log entry of a command of the web server set that failed.
inline std::string commandFailed(const std::string& label, const std::string& command) {
    return "Log(0): network: network: networkHttpServerSet: " + label +
           ": Error executing system command: " + command + R"(\n)";
}
