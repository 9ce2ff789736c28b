#include "mngctl/commandTree.h"

#include "mngctl/outcome.h"
#include "mngctl/parser.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

CLI::App* findChild(CLI::App& command, const std::string& name) {
    const auto found =
        command.get_subcommands([&](const CLI::App* child) { return child->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

CLI::App& deepest(CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : deepest(*chosen.front());
}

std::string fullName(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return (parent == nullptr ? "" : fullName(*parent) + " ") + command.get_name();
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

/// The words in the order that the parser takes them in, the last one first. What stands after --
/// is no option, whatever it looks like.
std::vector<std::string> shielded(const std::vector<std::string>& words) {
    std::vector<std::string> reversed;
    bool optionsEnded = false;
    for (const std::string& word : words) {
        if (word == "--" && !optionsEnded) {
            optionsEnded = true;
        } else if (optionsEnded || word.starts_with('[') || word.starts_with(shield) ||
                   word == "++") {
            reversed.push_back(shield + word);
        } else {
            reversed.push_back(word);
        }
    }
    std::ranges::reverse(reversed);
    return reversed;
}

std::vector<std::string> namesOfSubcommands(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* const child : command.get_subcommands({})) {
        names.push_back(child->get_name());
    }
    return names;
}

CLI::Option* findOption(CLI::App& command, const std::string& word) {
    return command.get_option_no_throw(word.substr(0, word.find('=')));
}

std::string explain(const CLI::App& command, const CLI::ParseError& error) {
    const bool missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!missing && dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) {
        return error.what();
    }
    const Words rest = command.remaining();
    const Words verbs = namesOfSubcommands(command);
    for (const std::string& word : rest) {
        if (word.size() > 1 && word.starts_with('-')) {
            return fmt::format("'{}' has no option '{}'", fullName(command),
                               printable(word.substr(0, word.find('='))));
        }
        if (!verbs.empty()) {
            return fmt::format("there is no command '{} {}'; expected {}", fullName(command),
                               printable(withoutShield(word)), joinNames(verbs));
        }
        if (!missing) {
            return fmt::format("'{}' does not expect '{}'", fullName(command),
                               printable(withoutShield(word)));
        }
    }
    if (missing && !verbs.empty()) {
        return fmt::format("'{}' lacks what to do; expected {}", fullName(command),
                           joinNames(verbs));
    }
    return error.what();
}

std::string helpOf(const CLI::App& command) {
    std::string text =
        command.get_formatter()->make_help(&command, fullName(command), CLI::AppFormatMode::Normal);
    for (std::size_t gap = 0; (gap = text.find("\n\n\n", gap)) != std::string::npos;) {
        text.erase(gap, 1);
    }
    return text;
}

}  // namespace

CommandTree::CommandTree(Settings& target) : parser(std::make_unique<Parser>(target)) {
    CLI::App& app = parser->app;
    parser->commands.emplace_back(*parser, app);
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "mngctl " MNGCTL_VERSION, "Print the version")
        ->group(commonGroup);
    app.get_formatter()->label("Positionals", "Arguments");
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.footer(
        "Without a command mngctl offers a prompt; if its input is no terminal, it reads commands\n"
        "from it, one a line, and stops at the first that fails.\n"
        "\n"
        "Exit codes: 0 done, 1 refused by the board, 2 wrong usage or no consent (nothing was\n"
        "changed), 3 no answer.\n"
        "\n"
        "Examples:\n"
        "  mngctl ip set 192.0.2.10/24\n"
        "  mngctl dns set 192.0.2.1 192.0.2.2\n"
        "  mngctl --json dns show\n"
        "  mngctl rpc get_network_info");
    addCommonOptions(app, target);
}

CommandTree::~CommandTree() = default;

Command& CommandTree::root() { return parser->commands.front(); }

Action CommandTree::parse(const Words& words) {
    CLI::App& app = parser->app;
    try {
        app.parse(shielded(words));
    } catch (const CLI::CallForHelp&) {
        return [text = helpOf(deepest(app))](Session& session) { session.streams.out << text; };
    } catch (const CLI::CallForVersion& version) {
        return [text = std::string(version.what())](Session& session) {
            session.streams.out << text << '\n';
        };
    } catch (const CLI::ParseError& error) {
        throw UsageError(fmt::format("{}\nTry '{} --help'.", explain(deepest(app), error),
                                     fullName(deepest(app))));
    }
    return parser->chosen;
}

std::string CommandTree::help(const Words& path) {
    CLI::App* command = &parser->app;
    for (const std::string& word : path) {
        CLI::App* const child = findChild(*command, word);
        if (child == nullptr) {
            const Words verbs = namesOfSubcommands(*command);
            throw UsageError(fmt::format("there is no command '{} {}'{}", fullName(*command),
                                         printable(word),
                                         verbs.empty() ? "" : "; expected " + joinNames(verbs)));
        }
        command = child;
    }
    return helpOf(*command);
}

Words CommandTree::complete(const Words& before, const std::string& partial) {
    CLI::App* command = &parser->app;
    std::size_t position = 0;
    bool value = false;
    for (const std::string& word : before) {
        if (value) {
            value = false;
        } else if (word.starts_with('-')) {
            const CLI::Option* const option = findOption(*command, word);
            value = option != nullptr && takesValue(*option) && word.find('=') == std::string::npos;
        } else if (CLI::App* const child = findChild(*command, word)) {
            command = child;
            position = 0;
        } else {
            ++position;
        }
    }
    Words all;
    if (value) {
        return all;
    }
    if (partial.starts_with('-')) {
        for (const CLI::Option* const option : command->get_options()) {
            for (const std::string& name : option->get_lnames()) {
                all.push_back("--" + name);
            }
        }
    } else {
        all = position == 0 ? namesOfSubcommands(*command) : Words{};
        const auto arguments = command->get_options(
            [](const CLI::Option* option) { return option->get_positional(); });
        if (!arguments.empty()) {
            const auto found =
                parser->offered.find(arguments[std::min(position, arguments.size() - 1)]);
            const bool inRange =
                position < arguments.size() || arguments.back()->get_allow_extra_args();
            if (found != parser->offered.end() && inRange) {
                all.insert(all.end(), found->second.begin(), found->second.end());
            }
        }
    }
    std::erase_if(all, [&](const std::string& name) { return !name.starts_with(partial); });
    std::ranges::sort(all);
    return all;
}

}  // namespace mngctl
