#include "mngctl/events/eventParser.h"

#include "mngctl/wire/json.h"

#include <utility>

namespace mngctl {

namespace {

/// A line longer than this is no event's: the rest of it is dropped.
constexpr std::size_t lineMaximum = 1U << 20U;

constexpr std::string_view timeKey = "\"eventTime\": \"";
constexpr std::string_view causeKey = "\"lastRestartCause\": \"";
/// What the board writes behind the cause.
constexpr std::string_view causeEnd = "\"\n    }\n  }\n}";

std::optional<std::string> behind(const std::string& text, std::string_view key) {
    const std::size_t start = text.find(key);
    if (start == std::string::npos) {
        return std::nullopt;
    }
    return text.substr(start + key.size());
}

/// The text of a field of a JSON object; nothing if there is none.
std::optional<std::string> textAt(const Json& json, const char* key) {
    const auto found = json.find(key);
    if (found == json.end() || !found->is_string()) {
        return std::nullopt;
    }
    return found->get<std::string>();
}

/// A notification that is written another way.
Notification readJson(const std::string& text) {
    const Json json = Json::parse(text, nullptr, false);
    Notification read;
    if (!json.is_object() || !json.contains("ietf-restconf:notification")) {
        return read;
    }
    const Json& content = json["ietf-restconf:notification"];
    if (!content.is_object()) {
        return read;
    }
    read.time = textAt(content, "eventTime");
    const auto restart = content.find("VANTORIX-MSAN-MIB:RebootStatusIndication");
    if (restart != content.end() && restart->is_object()) {
        read.restartCause = textAt(*restart, "lastRestartCause");
    }
    return read;
}

}  // namespace

std::vector<Event> EventParser::take(std::string_view bytes) {
    for (const char byte : bytes) {
        // A line ends with CR LF, LF or CR.
        if (byte == '\n' && isAfterReturn) {
            isAfterReturn = false;
            continue;
        }
        isAfterReturn = byte == '\r';
        if (byte == '\n' || byte == '\r') {
            takeLine(rest);
            rest.clear();
        } else if (rest.size() < lineMaximum) {
            rest += byte;
        }
    }
    return std::exchange(complete, {});
}

void EventParser::takeLine(std::string_view line) {
    if (line.empty()) {
        return endEvent();
    }
    const std::size_t colon = line.find(':');
    const std::string_view field = line.substr(0, colon);
    std::string_view value = colon == std::string_view::npos ? "" : line.substr(colon + 1);
    if (value.starts_with(' ')) {
        value.remove_prefix(1);
    }
    if (field == "data") {
        text.append(value).push_back('\n');
    } else if (field == "event") {
        name = value;
    } else if (field == "id") {
        lastId = value;
    }
}

void EventParser::endEvent() {
    if (!text.empty()) {
        text.pop_back();
        complete.push_back({lastId, name.empty() ? "message" : name, text});
    }
    name.clear();
    text.clear();
}

Notification readNotification(const std::string& text) {
    std::optional<std::string> cause = behind(text, causeKey);
    if (!cause) {
        return readJson(text);
    }
    Notification read;
    if (const auto time = behind(text, timeKey)) {
        read.time = time->substr(0, time->find('"'));
    }
    read.isCutOff = !cause->ends_with(causeEnd);
    if (!read.isCutOff) {
        cause->resize(cause->size() - causeEnd.size());
    } else if (const Notification other = readJson(text); other.restartCause) {
        return other;
    }
    read.restartCause = cause;
    return read;
}

}  // namespace mngctl
