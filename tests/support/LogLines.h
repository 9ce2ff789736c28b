#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// Collects log lines, "level text", from any thread.
class LogLines {
public:
    std::function<void(int, const std::string&)> receiver();
    std::vector<std::string> lines() const;
    /// The lines so far, which it forgets.
    std::vector<std::string> take();
    /// Whether a text is in one of them.
    bool contain(const std::string& text) const;

private:
    mutable std::mutex mutex;
    std::vector<std::string> collected;
};
