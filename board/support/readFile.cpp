#include "board/support/readFile.h"

#include "board/support/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace support {

namespace {

[[noreturn]] void fail(const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + file.string());
}

}  // namespace

std::string readFile(const std::filesystem::path& file) {
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened) {
        fail(file);
    }
    std::string content;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = ::read(opened.get(), buffer.data(), buffer.size());
        if (count > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            return content;
        } else if (errno != EINTR) {
            fail(file);
        }
    }
}

}  // namespace support
