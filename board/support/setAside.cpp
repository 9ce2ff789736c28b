#include "board/support/setAside.h"

#include "board/support/Descriptor.h"

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <system_error>

namespace support {

namespace {

namespace fs = std::filesystem;

/// The file itself comes first: should the process end in between, the next opening finds the log
/// without its file, which is a damage that it sees.
constexpr std::array<const char*, 4> suffixes{"", "-wal", "-journal", "-shm"};

fs::path withSuffix(const fs::path& file, const char* suffix) { return file.string() + suffix; }

/// A name that overwrites nothing.
fs::path freeName(const fs::path& file) {
    const std::string base = fmt::format(
        "{}.damaged-{:%Y%m%dT%H%M%SZ}", file.string(),
        fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
    const auto taken = [](const fs::path& name) {
        return std::any_of(suffixes.begin(), suffixes.end(), [&](const char* suffix) {
            return fs::exists(fs::symlink_status(withSuffix(name, suffix)));
        });
    };
    fs::path name = base;
    for (int number = 2; taken(name); ++number) {
        name = fmt::format("{}.{}", base, number);
    }
    return name;
}

}  // namespace

fs::path setAside(const fs::path& file) {
    fs::path name = freeName(file);
    for (const char* suffix : suffixes) {
        std::error_code error;
        fs::rename(withSuffix(file, suffix), withSuffix(name, suffix), error);
        if (error && error != std::errc::no_such_file_or_directory) {
            throw std::system_error(error, "cannot rename " + withSuffix(file, suffix).string());
        }
    }
    // Not every file system lets a directory be synchronised; the renaming stands without it.
    if (const Descriptor directory(::open(file.parent_path().c_str(), O_RDONLY | O_CLOEXEC));
        directory) {
        ::fsync(directory.get());
    }
    return name;
}

}  // namespace support
