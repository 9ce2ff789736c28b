#include "board/framework/stateFile.h"

#include "board/framework/FileDescriptor.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <system_error>

namespace board {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void failReading(const fs::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + file.string());
}

}  // namespace

std::string readStateFile(const fs::path& file) {
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened) {
        failReading(file);
    }
    std::string content;
    std::array<char, 4096> part{};
    for (;;) {
        const ssize_t size = ::read(opened.get(), part.data(), part.size());
        if (size > 0) {
            content.append(part.data(), static_cast<std::size_t>(size));
        } else if (size == 0) {
            return content;
        } else if (errno != EINTR) {
            failReading(file);
        }
    }
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
