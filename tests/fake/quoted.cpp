#include "fake/quoted.h"

#include <fmt/core.h>

namespace fake {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\n') {
            result += "\\n";
        } else if (character == '"' || character == '\\') {
            result += '\\';
            result += character;
        } else if (byte < 0x20 || byte >= 0x7f) {
            result += fmt::format("\\x{:02x}", byte);
        } else {
            result += character;
        }
    }
    return result + '"';
}

}  // namespace fake
