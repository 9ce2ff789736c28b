#include "board/support/readFile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace board {

namespace {

[[noreturn]] void fail(const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + file.string());
}

}  // namespace

std::string readFile(const std::filesystem::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        fail(file);
    }
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        fail(file);
    }
    return content;
}

}  // namespace board
