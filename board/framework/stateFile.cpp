#include "board/framework/stateFile.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>
#include <system_error>

namespace board {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void failReading(const fs::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + file.string());
}

}  // namespace

std::string readStateFile(const fs::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        failReading(file);
    }
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        failReading(file);
    }
    return content;
}

fs::path setStateFileAside(const fs::path& file) {
    const std::string base = fmt::format(
        "{}.damaged-{:%Y%m%dT%H%M%SZ}", file.string(),
        fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
    fs::path name = base;
    for (int number = 2; fs::exists(fs::symlink_status(name)); ++number) {
        name = fmt::format("{}.{}", base, number);
    }
    fs::rename(file, name);
    return name;
}

}  // namespace board
