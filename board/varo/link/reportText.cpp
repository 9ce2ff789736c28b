#include "board/varo/link/reportText.h"

#include "varo/records.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace varo {

std::string quoted(std::string_view text, std::size_t longest) {
    std::string result = "\"";
    for (const char c : text.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(c);
        result += byte < ' ' || byte >= 0x7f || c == '"' || c == '\\'
                      ? fmt::format("\\x{:02x}", byte)
                      : std::string(1, c);
    }
    return result + (text.size() > longest ? "...\"" : "\"");
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            parts.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string_view ReportParts::operator[](std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::string_view() : found->second;
}

ReportParts readParts(std::string_view message) {
    const auto parts = split(message, '\0');
    if (parts.empty()) {
        throw BadReport("the report is empty");
    }
    ReportParts report{parts.front(), {}};
    for (const std::string_view part : parts) {
        const std::size_t sign = part.find('=');
        if (sign != std::string_view::npos) {
            report.values.emplace(part.substr(0, sign), part.substr(sign + 1));
        }
    }
    return report;
}

std::optional<std::uint32_t> parsedSeconds(std::string_view text) {
    std::uint32_t seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds);
    return read.ec == std::errc() && read.ptr == end ? std::optional(seconds) : std::nullopt;
}

bool isDomainWord(std::string_view text) {
    const auto isVisible = [](char c) { return c > ' ' && c < 0x7f; };
    return text.size() < sizeof(varoLib_s_dns::domain) && std::ranges::all_of(text, isVisible);
}

}  // namespace varo
