#include "tests/board/process/support.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>
#include <system_error>
#include <thread>

namespace daemontest {

namespace fs = std::filesystem;

Directory::Directory() {
    std::string name = (fs::temp_directory_path() / "daemon-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    path = name;
}

Directory::~Directory() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

process::Log Lines::receiver() {
    return [this](int level, const std::string& text) {
        const std::lock_guard lock(mutex);
        lines.push_back(fmt::format("{} {}", level, text));
    };
}

std::vector<std::string> Lines::all() const {
    const std::lock_guard lock(mutex);
    return lines;
}

bool Lines::contain(const std::string& text) const {
    const auto now = all();
    return std::any_of(now.begin(), now.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeScript(const fs::path& file, const std::string& body) {
    {
        std::ofstream stream(file);
        stream << "#!/bin/sh\n" << body;
    }
    fs::permissions(file, fs::perms::owner_all);
}

long linesOf(const fs::path& file) {
    const std::string text = contentOf(file);
    return std::count(text.begin(), text.end(), '\n');
}

}  // namespace daemontest
