#include "tests/board/varo/storage.h"

#include <fmt/format.h>
#include <sqlite3.h>
#include <sys/mount.h>

#include <cerrno>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace varotest {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::string sql(const fs::path& file, const std::string& statements) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open(file.c_str(), &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errstr(result));
    }

    std::string output;
    const auto collect = [](void* context, int count, char** values, char**) {
        auto& rows = *static_cast<std::string*>(context);
        if (!rows.empty()) {
            rows += '\n';
        }
        for (int i = 0; i < count; ++i) {
            rows += std::string(i == 0 ? "" : "|") + (values[i] ? values[i] : "NULL");
        }
        return 0;
    };
    if (sqlite3_exec(opened, statements.c_str(), collect, &output, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(opened));
    }
    return output;
}

void mountTmpfs(const fs::path& directory, std::size_t bytes) {
    if (::mount("tmpfs", directory.c_str(), "tmpfs", 0, fmt::format("size={}", bytes).c_str()) !=
        0) {
        fail("mount tmpfs");
    }
}

void bindMount(const fs::path& source, const fs::path& target) {
    if (::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        fail("bind mount");
    }
}

void remountReadOnly(const fs::path& directory) {
    if (::mount("", directory.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
        fail("remount read-only");
    }
}

}  // namespace varotest
