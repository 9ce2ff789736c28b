#include "support/LogLines.h"

#include <algorithm>
#include <utility>

std::function<void(int, const std::string&)> LogLines::receiver() {
    return [this](int level, const std::string& text) {
        const std::lock_guard lock(mutex);
        collected.push_back(std::to_string(level) + " " + text);
    };
}

std::vector<std::string> LogLines::lines() const {
    const std::lock_guard lock(mutex);
    return collected;
}

std::vector<std::string> LogLines::take() {
    const std::lock_guard lock(mutex);
    return std::exchange(collected, {});
}

bool LogLines::contain(const std::string& text) const {
    const std::lock_guard lock(mutex);
    return std::ranges::any_of(
        collected, [&](const std::string& line) { return line.find(text) != std::string::npos; });
}
