#pragma once

#include "mngctl/command.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <deque>
#include <map>

namespace mngctl {

/// What the commands of one tree share.
struct Parser {
    explicit Parser(Settings& target)
        : app("The front end of the board's network management.", "mngctl"), settings(target) {}

    CLI::App app;
    Settings& settings;
    Action chosen{};
    std::map<const CLI::Option*, Words> offered{};
    // References to the elements are handed out.
    std::deque<Command> commands{};
    std::deque<Argument> arguments{};
};

/// Stands before a word that the parser must not look into: it takes words in brackets apart at
/// their commas, lets ++ end a command, and takes what begins with a hyphen for an option.
inline constexpr char shield = '\x1f';

inline std::string withoutShield(const std::string& word) {
    return word.starts_with(shield) ? word.substr(1) : word;
}

/// Adds the options that every command has.
void addCommonOptions(CLI::App& command, Settings& settings);

inline constexpr const char* commonGroup = "Common options";

}  // namespace mngctl
