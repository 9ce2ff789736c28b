#include "mngctl/prompt/completion.h"

#include "mngctl/commandTree.h"
#include "mngctl/prompt/splitLine.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

std::string commonPrefix(const std::vector<std::string>& names) {
    std::string prefix = names.front();
    for (const std::string& name : names) {
        const auto differ = std::ranges::mismatch(prefix, name).in1;
        prefix.erase(differ, prefix.end());
    }
    return prefix;
}

}  // namespace

Completion completeLine(std::string_view line) {
    const SplitLine split = splitLine(line);
    // A name needs no quotes, so a quoted word is none.
    if (split.openQuote != 0) {
        return {};
    }
    Settings settings;
    CommandTree tree(settings);
    addAllCommands(tree, true);
    Completion completion;
    completion.candidates = tree.complete(split.words, split.last);
    if (completion.candidates.empty()) {
        return completion;
    }
    completion.insert = commonPrefix(completion.candidates).substr(split.last.size());
    if (completion.candidates.size() == 1) {
        completion.insert += ' ';
    }
    return completion;
}

std::string inColumns(const std::vector<std::string>& names, std::size_t width) {
    constexpr std::size_t gap = 2;
    std::size_t widest = 1;
    for (const std::string& name : names) {
        widest = std::max(widest, name.size());
    }
    const std::size_t perLine = std::max<std::size_t>(1, (width + gap) / (widest + gap));
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool lastOfLine = i % perLine == perLine - 1 || i + 1 == names.size();
        text += lastOfLine ? names[i] + "\n" : fmt::format("{:<{}}", names[i], widest + gap);
    }
    return text;
}

}  // namespace mngctl
