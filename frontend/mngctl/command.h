#pragma once

#include "mngctl/session.h"

#include <concepts>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// The parser behind the commands takes long to compile: its own header is for the few files that
// implement these classes.
namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace mngctl {

using Words = std::vector<std::string>;

/// What a command does once its words are parsed.
using Action = std::function<void(Session&)>;

struct Parser;

/// An argument of a command. A parse fills it.
class Argument {
public:
    explicit Argument(const CLI::Option& argument) : option(argument) {}

    /// The words that were given for it, as they are.
    Words given() const;
    /// The one word that was given for it; empty if none was.
    std::string one() const;

private:
    const CLI::Option& option;
};

/// The least and the greatest number that is taken.
struct Range {
    unsigned least;
    unsigned greatest;
};

/// A command with its options and arguments. The tree owns all commands and arguments; what
/// receives the value of an option has to outlive the tree.
class Command {
public:
    Command(Parser& owner, CLI::App& self) : parser(owner), app(self) {}
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Adds a command below this one. `examples` are command lines without the program's name. A
    /// command whose action needs the command's own arguments gets it from setAction.
    Command& addCommand(const std::string& name, const std::string& description,
                        const Words& examples, Action action = {});

    /// Adds a command without arguments that shows something. Its examples are itself, for people
    /// and as JSON.
    Command& addShow(const std::string& name, const std::string& description, Action action = {});
    /// Adds a command that only leads to others.
    Command& addNoun(const std::string& name, const std::string& description,
                     const Words& examples);

    /// Adds an argument that must be given; `values` are offered as completions.
    const Argument& addArgument(const std::string& name, const std::string& description,
                                Words values = {});

    /// Adds an argument that may be left out.
    const Argument& addOptionalArgument(const std::string& name, const std::string& description,
                                        Words values = {});

    /// Adds an argument that takes any number of words, none included.
    const Argument& addArguments(const std::string& name, const std::string& description);

    void addFlag(const std::string& name, bool& value, const std::string& description);
    /// Adds the flag --yes, for Settings::yes, to a command that may ask for consent.
    void addYesFlag();

    /// Adds an option; `type` stands for its value in the help. Left out, it leaves `value` alone.
    void addOption(const std::string& name, std::string& value, const std::string& type,
                   const std::string& description);

    void addOption(const std::string& name, std::optional<std::string>& value,
                   const std::string& type, const std::string& description);

    /// The same for a number within `range`. There are std::uint16_t and std::size_t.
    template <std::unsigned_integral Number>
    void addNumber(const std::string& name, Number& value, const Range& range,
                   const std::string& type, const std::string& description);

    void setAction(Action action);

private:
    Parser& parser;
    CLI::App& app;
};

}  // namespace mngctl
