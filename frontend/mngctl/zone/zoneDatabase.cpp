#include "mngctl/zone/zoneDatabase.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace mngctl {

namespace {

std::string databaseDirectory() {
    const char* const named = std::getenv("TZDIR");
    return named == nullptr || *named == '\0' ? "/usr/share/zoneinfo" : named;
}

/// From version 2 on, a file ends with the rule between two line ends (RFC 8536).
std::string footer(const std::string& bytes) {
    constexpr std::size_t versionPlace = 4;
    const bool hasFooter = bytes.starts_with("TZif") && bytes.size() > versionPlace &&
                           bytes[versionPlace] >= '2' && bytes.back() == '\n';
    if (!hasFooter) {
        return {};
    }
    const std::size_t begin = bytes.rfind('\n', bytes.size() - 2);
    return begin == std::string::npos ? std::string()
                                      : bytes.substr(begin + 1, bytes.size() - begin - 2);
}

}  // namespace

std::string ruleOfZone(const std::string& name) {
    const std::string directory = databaseDirectory();
    const auto file = std::filesystem::path(directory) / name;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        throw UsageError(
            fmt::format("there is no zone '{}' in {}: give its rule after the name, such as "
                        "CET-1CEST,M3.5.0,M10.5.0/3",
                        printable(name), directory));
    }
    std::ifstream stream(file, std::ios::binary);
    std::string rule =
        footer({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
    if (rule.empty()) {
        throw UsageError(fmt::format("{} has no rule for the time to come: give one after the name",
                                     file.string()));
    }
    return rule;
}

}  // namespace mngctl
