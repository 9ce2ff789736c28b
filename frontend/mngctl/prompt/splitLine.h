#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mngctl {

/// A line taken apart as a shell does it, up to its end: blanks separate words; single quotes keep
/// everything, double quotes all but \" and \\; a backslash elsewhere keeps the next character; a
/// word that begins with # begins a comment. Nothing is expanded.
struct SplitLine {
    std::vector<std::string> words;  ///< those that are complete
    std::string last;                ///< what stands at the end, perhaps nothing
    bool inWord = false;             ///< whether the end belongs to a word
    char openQuote = 0;              ///< the quote or the backslash that lacks its end
};

SplitLine splitLine(std::string_view line);

/// All words. Throws UsageError if a quote is left open.
std::vector<std::string> splitWords(std::string_view line);

}  // namespace mngctl
