#pragma once

#include "board/process/Log.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace daemontest {

/// A directory of the test's own, removed with all that is in it.
class Directory {
public:
    Directory();
    ~Directory();
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path / name; }

    std::filesystem::path path;
};

/// Collects log lines, "level text", from any thread.
class Lines {
public:
    process::Log receiver();
    std::vector<std::string> all() const;
    bool contain(const std::string& text) const;

private:
    mutable std::mutex mutex;
    std::vector<std::string> lines;
};

/// Waits until the condition holds, up to half a minute.
bool eventually(const std::function<bool()>& condition);

std::string contentOf(const std::filesystem::path& file);
/// An executable script of the shell.
void writeScript(const std::filesystem::path& file, const std::string& body);
/// The number of lines of a file that may not be there yet.
long linesOf(const std::filesystem::path& file);

/// Fills a text field; the rest of it is zero.
template <std::size_t size>
void setText(char (&field)[size], const std::string& text) {
    std::memset(field, 0, size);
    text.copy(field, std::min(size, text.size()));
}

}  // namespace daemontest
