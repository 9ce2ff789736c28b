#include "board/support/Descriptor.h"
#include "board/varo/Library.h"
#include "varo/varoLib.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace varo {

namespace {

namespace fs = std::filesystem;

/// The process id that the file holds; 0 when there is no file, as none runs. Throws Failure.
pid_t processIn(const fs::path& file) {
    std::error_code error;
    if (!fs::exists(file, error) && !error) {
        return 0;
    }
    std::ifstream stream(file);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        throw Failure(systemFailed, fmt::format("cannot read {}", file.string()));
    }
    text.erase(text.find_last_not_of(" \t\r\n") + 1);
    pid_t process = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, process);
    // 0, 1 and negative numbers would mean other processes than the one.
    if (read.ec != std::errc() || read.ptr != end || process <= 1) {
        throw Failure(systemFailed, fmt::format("{} does not hold a process id", file.string()));
    }
    return process;
}

}  // namespace

}  // namespace varo

int varoGetMyBoardPos(std::uint32_t* position) {
    return varo::answer(__func__, [&] {
        varo::required(position) = varo::Library::instance().given().boardPosition;
    });
}

/// Nobody to tell, because no client is configured or none runs, is success.
int varoSendSigToAcs(int signal) {
    return varo::answer(__func__, [&] {
        if (signal < 1 || signal > SIGRTMAX) {
            throw varo::Failure(varo::invalidValue, fmt::format("there is no signal {}", signal));
        }
        const auto file = varo::Library::instance().given().acsPidFile;
        if (file.empty()) {
            return;
        }
        const pid_t process = varo::processIn(file);
        if (process == 0) {
            return;
        }
        // The descriptor stays with the process, whoever gets its number next.
        const support::Descriptor named(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
        const bool isSent =
            named && ::syscall(SYS_pidfd_send_signal, named.get(), signal, nullptr, 0) == 0;
        if (isSent) {
            return;
        }
        if (errno == ESRCH) {
            varo::Library::instance().log(
                LOG_INFO, fmt::format("{} names process {}, which does not run: nobody is told of "
                                      "the change",
                                      file.string(), process));
            return;
        }
        throw varo::Failure(varo::systemFailed,
                            fmt::format("cannot signal process {}: {}", process,
                                        std::generic_category().message(errno)));
    });
}
