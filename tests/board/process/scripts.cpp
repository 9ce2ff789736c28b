#include "tests/board/process/scripts.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

namespace daemontest {

namespace fs = std::filesystem;

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
