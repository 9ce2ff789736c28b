#include "support/CapturedOutput.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace {

int checked(int result) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), "capturing standard output");
    }
    return result;
}

}  // namespace

CapturedOutput::CapturedOutput()
    : original(checked(dup(STDOUT_FILENO))), file(checked(memfd_create("output", MFD_CLOEXEC))) {
    std::fflush(stdout);
    checked(dup2(file, STDOUT_FILENO));
}

CapturedOutput::~CapturedOutput() {
    std::fflush(stdout);
    dup2(original, STDOUT_FILENO);
    close(original);
    close(file);
}

std::string CapturedOutput::take() {
    std::fflush(stdout);
    std::string text(static_cast<std::size_t>(checked(static_cast<int>(lseek(file, 0, SEEK_END)))),
                     '\0');
    text.resize(static_cast<std::size_t>(
        checked(static_cast<int>(pread(file, text.data(), text.size(), 0)))));
    // The next line is written at the place that all descriptors of the file share.
    checked(ftruncate(file, 0));
    checked(static_cast<int>(lseek(file, 0, SEEK_SET)));
    return text;
}
