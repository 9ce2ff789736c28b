// Programs that are run through the shell, and the files that tell of them, replaced when a test is
// linked (ld --wrap). No command is run.

#include "fake/Platform.h"
#include "fake/quoted.h"

#include <fmt/core.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

using fake::Platform;
using fake::quoted;

extern "C" int __real_stat(const char* path, struct stat* status);

namespace {

/// The board's own files; any other is the machine's.
bool isOfTheBoard(std::string_view path) {
    return path.starts_with("/opt/kalvor/") || path.starts_with("/opt/vantorix/") ||
           path.starts_with("/upgrade_root/") || path == "/etc/zu_fs_version" ||
           path == "/etc/fs-version";
}

std::FILE* streamOf(const std::string& text) {
    std::FILE* const stream = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), stream);
    std::rewind(stream);
    return stream;
}

}  // namespace

extern "C" {

/// A scripted failure is that of the shell, which does not come to the command then.
int __wrap_system(const char* command) {
    Platform& platform = Platform::current();
    const int failure = platform.script.failureOf("system");
    const auto scripted = platform.commandStatus.find(command);
    const int status = failure != 0                               ? failure
                       : scripted == platform.commandStatus.end() ? 0
                                                                  : scripted->second;
    platform.journal.write(fmt::format("system({}) -> {}", quoted(command), status));
    if (failure != 0) {
        return failure;
    }
    const auto action = platform.programs.actions.find(command);
    if (action != platform.programs.actions.end()) {
        action->second();
    }
    return status;
}

/// Fails under its own name or under that with the command line ("popen ls").
std::FILE* __wrap_popen(const char* command, const char* mode) {
    Platform& platform = Platform::current();
    int error = platform.script.failureOf("popen");
    if (error == 0) {
        error = platform.script.failureOf(std::string("popen ") + command);
    }
    platform.journal.write(fmt::format("popen({}, {}){}", quoted(command), quoted(mode),
                                       error != 0 ? fmt::format(" -> errno {}", error) : ""));
    if (error != 0) {
        errno = error;
        return nullptr;
    }
    std::FILE* const stream = streamOf(platform.programs.outputs[command].text);
    platform.programs.streams[stream] = command;
    return stream;
}

int __wrap_pclose(std::FILE* stream) {
    Platform& platform = Platform::current();
    const auto place = platform.programs.streams.find(stream);
    if (place == platform.programs.streams.end()) {
        platform.journal.write("pclose(unknown stream)");
        errno = EINVAL;
        return -1;
    }
    const std::string command = place->second;
    platform.programs.streams.erase(place);
    std::fclose(stream);
    const int status = platform.programs.outputs[command].status;
    platform.journal.write(fmt::format("pclose({}) -> {}", quoted(command), status));
    return status;
}

int __wrap_stat(const char* path, struct stat* status) {
    if (!isOfTheBoard(path)) {
        return __real_stat(path, status);
    }
    Platform& platform = Platform::current();
    const int scripted = platform.script.failureOf("stat");
    const bool exists = platform.programs.files.contains(path);
    platform.journal.write(fmt::format("stat({}) -> {}", quoted(path),
                                       scripted != 0 ? fmt::format("errno {}", scripted)
                                       : exists      ? "0"
                                                     : "not there"));
    if (scripted != 0 || !exists) {
        errno = scripted != 0 ? scripted : ENOENT;
        return -1;
    }
    *status = {};
    status->st_mode = S_IFREG | 0755;
    return 0;
}
}
