#include "board/support/StateFile.h"

#include "board/support/wholeFile.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <syslog.h>

#include <limits>

namespace support {

using nlohmann::json;

json parseDocument(const std::string& text, std::uint64_t version, Unversioned other) {
    constexpr const char* member = "version";
    json document = json::parse(text);
    if (other == Unversioned::first && !document.contains(member)) {
        return document;
    }
    const auto found = numberIn(document, member, std::numeric_limits<std::uint64_t>::max());
    if (found > version) {
        throw NewerDocument(
            fmt::format("it has version {}, this release knows version {}", found, version));
    }
    return document;
}

std::uint64_t numberIn(const json& object, const char* name, std::uint64_t highest) {
    const json& value = object.at(name);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > highest) {
        throw std::runtime_error(fmt::format("{} is no number up to {}", name, highest));
    }
    return value.get<std::uint64_t>();
}

void readState(const std::filesystem::path& file, const char* damageText,
               const std::function<void(const std::string&)>& parse, const Log& log) {
    if (!std::filesystem::exists(file)) {
        return;
    }
    const std::string text = readFile(file);
    try {
        parse(text);
    } catch (const NewerDocument& newer) {
        throw NewerDocument(
            fmt::format("{} cannot be used: {}; install the newer release again, or move "
                        "the file away to start from factory values",
                        file.string(), newer.what()));
    } catch (const std::exception& damage) {
        const std::filesystem::path kept = setAside(file);
        log(LOG_ERR, fmt::format(fmt::runtime(damageText), fmt::arg("file", file.string()),
                                 fmt::arg("reason", damage.what()), fmt::arg("kept", kept.string()),
                                 fmt::arg("keptName", kept.filename().string())));
    }
}

}  // namespace support
