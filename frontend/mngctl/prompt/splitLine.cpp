#include "mngctl/prompt/splitLine.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

SplitLine splitLine(std::string_view line) {
    SplitLine split;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (split.openQuote == '\\') {
            split.last += c;
            split.openQuote = 0;
        } else if (split.openQuote != 0) {
            const bool escape = split.openQuote == '"' && c == '\\' && i + 1 < line.size() &&
                                (line[i + 1] == '"' || line[i + 1] == '\\');
            if (escape) {
                split.last += line[++i];
            } else if (c == split.openQuote) {
                split.openQuote = 0;
            } else {
                split.last += c;
            }
        } else if (blank) {
            if (split.inWord) {
                split.words.push_back(std::move(split.last));
            }
            split.last.clear();
            split.inWord = false;
        } else if (c == '#' && !split.inWord) {
            break;
        } else {
            split.inWord = true;
            if (c == '\'' || c == '"' || c == '\\') {
                split.openQuote = c;
            } else {
                split.last += c;
            }
        }
    }
    return split;
}

std::vector<std::string> splitWords(std::string_view line) {
    SplitLine split = splitLine(line);
    if (split.openQuote != 0) {
        throw UsageError(fmt::format("the line ends after an open {}", split.openQuote));
    }
    if (split.inWord) {
        split.words.push_back(std::move(split.last));
    }
    return std::move(split.words);
}

}  // namespace mngctl
