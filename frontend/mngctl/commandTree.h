#pragma once

#include "mngctl/session.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <functional>
#include <map>

namespace mngctl {

/// The commands with their options: parses words, makes the help texts, and offers completions.
/// A tree serves for one parse.
class CommandTree {
public:
    using Action = std::function<void(Session&)>;
    using Words = std::vector<std::string>;

    /// `settings` receives the values of the common options and outlives the tree.
    explicit CommandTree(Settings& settings);

    CLI::App& root() { return app; }

    /// Adds a command that only leads to others. `examples` are command lines without the program's
    /// name.
    CLI::App& addNoun(const std::string& name, const std::string& description,
                      const std::vector<std::string>& examples);

    /// Adds a command that does something.
    CLI::App& addCommand(CLI::App& parent, const std::string& name, const std::string& description,
                         const std::vector<std::string>& examples);

    /// What the command does once its words are parsed.
    void setAction(CLI::App& command, Action action);

    /// Adds an argument, or with `many` any number of them; `values` are offered as completions.
    CLI::Option& addArgument(CLI::App& command, const std::string& name,
                             const std::string& description, bool many = false,
                             std::vector<std::string> values = {});

    /// The words that were given for an argument, as they are.
    static Words given(const CLI::Option& argument);
    static std::string givenOne(const CLI::Option& argument);

    /// What the words ask for; empty if they name no command. Throws UsageError.
    Action parse(const Words& words);

    /// The help text of the command that the words lead to. Throws UsageError.
    std::string help(const Words& path);

    /// The words that can stand after `before` and begin with `partial`.
    Words complete(const Words& before, const std::string& partial);

private:
    void addCommonOptions(CLI::App& command);
    std::string helpOf(const CLI::App& command) const;
    std::string explain(const CLI::ParseError& error);

    Settings& settings;
    CLI::App app;
    Action chosen;
    std::map<const CLI::Option*, Words> offered;
};

/// Adds every command. `interactive` adds those that make sense between others only, such as exit.
void addAllCommands(CommandTree& tree, bool interactive);

}  // namespace mngctl
