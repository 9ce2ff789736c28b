#include "mngctl/command.h"

#include "mngctl/parser.h"

namespace mngctl {

namespace {

CLI::Option& addPositional(CLI::App& app, const std::string& name, const std::string& description) {
    return *app.add_option(
                   name, [](const CLI::results_t&) { return true; }, description)
                ->type_name("");
}

/// The words that lead below the command, each with a blank after it.
std::string pathOf(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? "" : pathOf(*parent) + command.get_name() + " ";
}

}  // namespace

Words Argument::given() const {
    Words words;
    for (const std::string& word : option.results()) {
        words.push_back(withoutShield(word));
    }
    return words;
}

std::string Argument::one() const {
    const Words words = given();
    return words.empty() ? "" : words.front();
}

Command& Command::addCommand(const std::string& name, const std::string& description,
                             const Words& examples, Action action) {
    CLI::App& command = *app.add_subcommand(name, description);
    command.group("Commands");
    std::string footer;
    for (const std::string& example : examples) {
        footer += (footer.empty() ? "Examples:" : "") + ("\n  mngctl " + example);
    }
    command.footer(footer);
    addCommonOptions(command, parser.settings);
    Command& added = parser.commands.emplace_back(parser, command);
    if (action) {
        added.setAction(std::move(action));
    }
    return added;
}

Command& Command::addShow(const std::string& name, const std::string& description, Action action) {
    const std::string line = pathOf(app) + name;
    return addCommand(name, description, {line, line + " --json"}, std::move(action));
}

Command& Command::addNoun(const std::string& name, const std::string& description,
                          const Words& examples) {
    Command& noun = addCommand(name, description, examples);
    noun.app.require_subcommand(1, 1);
    return noun;
}

const Argument& Command::addArgument(const std::string& name, const std::string& description,
                                     Words values) {
    CLI::Option& argument = addPositional(app, name, description);
    argument.required();
    parser.offered[&argument] = std::move(values);
    return parser.arguments.emplace_back(argument);
}

const Argument& Command::addOptionalArgument(const std::string& name,
                                             const std::string& description, Words values) {
    CLI::Option& argument = addPositional(app, name, description);
    parser.offered[&argument] = std::move(values);
    return parser.arguments.emplace_back(argument);
}

const Argument& Command::addArguments(const std::string& name, const std::string& description) {
    CLI::Option& argument = addPositional(app, name, description);
    argument.expected(0, CLI::detail::expected_max_vector_size)->allow_extra_args();
    return parser.arguments.emplace_back(argument);
}

void Command::addFlag(const std::string& name, bool& value, const std::string& description) {
    app.add_flag(name, value, description);
}

void Command::addYesFlag() { addFlag("--yes", parser.settings.yes, "Do it without asking"); }

void Command::addOption(const std::string& name, std::string& value, const std::string& type,
                        const std::string& description) {
    app.add_option(name, value, description)->type_name(type);
}

void Command::addOption(const std::string& name, std::optional<std::string>& value,
                        const std::string& type, const std::string& description) {
    app.add_option(name, value, description)->type_name(type);
}

template <std::unsigned_integral Number>
void Command::addNumber(const std::string& name, Number& value, const Range& range,
                        const std::string& type, const std::string& description) {
    app.add_option(name, value, description)
        ->check(CLI::Range(range.least, range.greatest).description(""))
        ->type_name(type);
}

template void Command::addNumber(const std::string&, std::uint16_t&, const Range&,
                                 const std::string&, const std::string&);
template void Command::addNumber(const std::string&, std::size_t&, const Range&, const std::string&,
                                 const std::string&);

void Command::setAction(Action action) {
    app.final_callback([this, act = std::move(action)] { parser.chosen = act; });
}

}  // namespace mngctl
