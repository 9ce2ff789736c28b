#include "board/varo/link/reportText.h"

#include "varo/records.h"

#include <fmt/format.h>

#include <algorithm>

namespace varo {

std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 80;
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

bool isDomainWord(std::string_view text) {
    return text.size() < sizeof(varoLib_s_dns::domain) && std::all_of(
                                                              text.begin(), text.end(),
                                                              [](char c) {
                                                                  const auto byte =
                                                                      static_cast<unsigned char>(c);
                                                                  return byte > ' ' && byte < 0x7f;
                                                              });
}

}  // namespace varo
