#include "board/web/eventStream.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <sstream>

namespace web {

namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return text;
}

constexpr const char* lastEventHeader = "last-event-id:";

std::uint64_t numberIn(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t");
    std::uint64_t number = 0;
    if (start != std::string::npos) {
        std::from_chars(text.data() + start, text.data() + text.size(), number);
    }
    return number;
}

}  // namespace

Request parseRequest(const std::string& head) {
    std::istringstream lines(head);
    Request request;
    std::string target;
    lines >> request.method >> target;
    request.path = target.substr(0, target.find('?'));
    std::string line;
    while (std::getline(lines, line)) {
        const std::string header = lowerCase(line);
        if (header.starts_with(lastEventHeader)) {
            request.lastEventId = numberIn(header.substr(std::string(lastEventHeader).size()));
        }
    }
    return request;
}

std::string toEventStream(const Event& event) {
    std::string stream = "id: " + std::to_string(event.id) + "\nevent: " + event.name + "\ndata: ";
    for (const char character : event.text) {
        if (character == '\n') {
            stream += "\ndata: ";
        } else {
            stream += std::iscntrl(static_cast<unsigned char>(character)) != 0 ? ' ' : character;
        }
    }
    return stream + "\n\n";
}

}  // namespace web
