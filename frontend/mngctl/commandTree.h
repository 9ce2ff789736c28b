#pragma once

#include "mngctl/command.h"

#include <memory>
#include <utility>

namespace mngctl {

/// The commands with their options: parses words, makes the help texts, and offers completions.
/// A tree serves for one parse.
class CommandTree {
public:
    /// `settings` receives the values of the common options and outlives the tree.
    explicit CommandTree(Settings& settings);
    CommandTree(const CommandTree&) = delete;
    CommandTree& operator=(const CommandTree&) = delete;
    ~CommandTree();

    /// Adds a command that stands first.
    Command& addCommand(const std::string& name, const std::string& description,
                        const Words& examples, Action action = {}) {
        return root().addCommand(name, description, examples, std::move(action));
    }

    /// Adds a command that stands first and only leads to others.
    Command& addNoun(const std::string& name, const std::string& description,
                     const Words& examples) {
        return root().addNoun(name, description, examples);
    }

    /// What the words ask for; empty if they name no command. Throws UsageError.
    Action parse(const Words& words);

    /// The help text of the command that the words lead to. Throws UsageError.
    std::string help(const Words& path);

    /// The words that can stand after `before` and begin with `partial`.
    Words complete(const Words& before, const std::string& partial);

private:
    Command& root();

    const std::unique_ptr<Parser> parser;
};

/// Adds every command. `interactive` adds those that make sense between others only, such as exit.
void addAllCommands(CommandTree& tree, bool interactive);

}  // namespace mngctl
