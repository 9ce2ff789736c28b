#pragma once

#include "support/matchers.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

/// The symbols of a committed list in this folder, sorted; comments and empty lines are left out.
inline std::vector<std::string> listedSymbols(const std::string& name) {
    std::ifstream file(SYMBOL_LISTS "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.front() != '#') {
            lines.push_back(line);
        }
    }
    std::ranges::sort(lines);
    return lines;
}

/// The exported functions among them.
inline std::vector<std::string> exportedFunctionNames() {
    std::vector<std::string> names = listedSymbols("exports.txt");
    std::erase_if(names, [](const std::string& symbol) {
        return !std::regex_match(symbol, std::regex("network[A-Z]\\w*"));
    });
    return names;
}
