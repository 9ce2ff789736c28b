#include "board/services/timeZoneFiles.h"

#include "board/services/timeZoneRule.h"
#include "board/services/zoneFile.h"
#include "board/support/replaceFile.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace services {

namespace {

void write(const std::filesystem::path& file, const std::string& content) {
    if (file.empty()) {
        return;
    }
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(file))) {
        throw std::runtime_error(
            fmt::format("{} is a symbolic link, whose target is not overwritten", file.string()));
    }
    support::replaceFile(file, content);
}

}  // namespace

void writeTimeZone(const TimeZoneFiles& files, const varoLib_s_sntpTimeZone& zone) {
    const TimeZoneRule rule = timeZoneRule(zone);
    write(files.localtime, zoneFile(rule));
    write(files.rule, rule.text + '\n');
}

}  // namespace services
