#include "mngctl/commandTree.h"

#include "mngctl/outcome.h"

#include <fmt/format.h>
#include <algorithm>
#include <charconv>

namespace mngctl {

namespace {

/// Stands before a word that the parser must not look into: it takes words in brackets apart at
/// their commas, lets ++ end a command, and takes what begins with a hyphen for an option.
constexpr char shield = '\x1f';

constexpr const char* commonGroup = "Common options";

std::chrono::milliseconds parseTimeout(const std::string& text) {
    constexpr double shortest = 0.01;
    constexpr double longest = 3600;
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    // Negated, so that "nan" is refused as well.
    if (error != std::errc{} || end != text.data() + text.size() ||
        !(seconds >= shortest && seconds <= longest))
        throw CLI::ValidationError(
            "--timeout", fmt::format("expected seconds from {} to {}, not '{}'", shortest, longest,
                                     printable(text)));
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

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

std::string plain(const std::string& word) {
    return word.starts_with(shield) ? word.substr(1) : word;
}

/// The words in the order that the parser takes them in, the last one first. What stands after --
/// is no option, whatever it looks like.
std::vector<std::string> shielded(const std::vector<std::string>& words) {
    std::vector<std::string> reversed;
    bool optionsEnded = false;
    for (const std::string& word : words) {
        if (word == "--" && !optionsEnded)
            optionsEnded = true;
        else if (optionsEnded || word.starts_with('[') || word.starts_with(shield) || word == "++")
            reversed.push_back(shield + word);
        else
            reversed.push_back(word);
    }
    std::ranges::reverse(reversed);
    return reversed;
}

std::vector<std::string> namesOfSubcommands(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* const child : command.get_subcommands({}))
        names.push_back(child->get_name());
    return names;
}

CLI::Option* findOption(CLI::App& command, const std::string& word) {
    return command.get_option_no_throw(word.substr(0, word.find('=')));
}

}  // namespace

CommandTree::CommandTree(Settings& target)
    : settings(target), app("The front end of the board's network management.", "mngctl") {
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
    addCommonOptions(app);
}

void CommandTree::addCommonOptions(CLI::App& command) {
    const char* const group = commonGroup;
    const auto portNumber = CLI::Range(1, 65535).description("");
    command.set_help_flag("-h,--help", "Print this help")->group(group);
    command.add_flag("--json", settings.json, "Print what was read as JSON")->group(group);
    command.add_flag("-q,--quiet", settings.quiet, "Print nothing after a change")->group(group);
    command.add_option("--host", settings.host, "Name or IPv4 address of the board (127.0.0.1)")
        ->type_name("HOST")
        ->group(group);
    auto* const tcp = command.add_flag_callback(
        "--tcp", [this] { settings.protocol = Protocol::Tcp; }, "Talk over TCP (the default)");
    auto* const udp = command.add_flag_callback(
        "--udp", [this] { settings.protocol = Protocol::Udp; }, "Talk over UDP");
    // The blank keeps the help from telling what excludes what.
    tcp->group(group)->option_text(" ")->excludes(udp);
    udp->group(group)->option_text(" ");
    command
        .add_option_function<std::string>(
            "--timeout", [this](const std::string& text) { settings.timeout = parseTimeout(text); },
            "Longest time to wait for an answer (30)")
        ->type_name("SECONDS")
        ->group(group);
    command
        .add_option("--port", settings.port,
                    "Port of the network program, instead of asking the port mapper")
        ->check(portNumber)
        ->type_name("PORT")
        ->group(group);
    command.add_option("--control-port", settings.controlPort, "The same of the control program")
        ->check(portNumber)
        ->type_name("PORT")
        ->group(group);
}

CLI::App& CommandTree::addNoun(const std::string& name, const std::string& description,
                               const std::vector<std::string>& examples) {
    CLI::App& noun = addCommand(app, name, description, examples);
    noun.require_subcommand(1, 1);
    return noun;
}

CLI::App& CommandTree::addCommand(CLI::App& parent, const std::string& name,
                                  const std::string& description,
                                  const std::vector<std::string>& examples) {
    CLI::App& command = *parent.add_subcommand(name, description);
    command.group("Commands");
    std::string footer;
    for (const std::string& example : examples)
        footer += (footer.empty() ? "Examples:" : "") + ("\n  mngctl " + example);
    command.footer(footer);
    addCommonOptions(command);
    return command;
}

void CommandTree::setAction(CLI::App& command, Action action) {
    command.final_callback([this, act = std::move(action)] { chosen = act; });
}

CLI::Option& CommandTree::addArgument(CLI::App& command, const std::string& name,
                                      const std::string& description, bool many, Words values) {
    CLI::Option& argument = *command.add_option(
        name, [](const CLI::results_t&) { return true; }, description);
    argument.type_name("");
    if (many)
        argument.expected(0, CLI::detail::expected_max_vector_size)->allow_extra_args();
    if (!values.empty())
        offered[&argument] = std::move(values);
    return argument;
}

CommandTree::Words CommandTree::given(const CLI::Option& argument) {
    Words words;
    for (const std::string& word : argument.results())
        words.push_back(plain(word));
    return words;
}

std::string CommandTree::givenOne(const CLI::Option& argument) {
    const Words words = given(argument);
    return words.empty() ? "" : words.front();
}

CommandTree::Action CommandTree::parse(const Words& words) {
    try {
        app.parse(shielded(words));
    } catch (const CLI::CallForHelp&) {
        return [text = helpOf(deepest(app))](Session& session) { session.streams.out << text; };
    } catch (const CLI::CallForVersion& version) {
        return [text = std::string(version.what())](Session& session) {
            session.streams.out << text << '\n';
        };
    } catch (const CLI::ParseError& error) {
        throw UsageError(
            fmt::format("{}\nTry '{} --help'.", explain(error), fullName(deepest(app))));
    }
    return chosen;
}

std::string CommandTree::explain(const CLI::ParseError& error) {
    const CLI::App& command = deepest(app);
    const bool missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!missing && dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr)
        return error.what();
    const Words rest = command.remaining();
    const Words verbs = namesOfSubcommands(command);
    for (const std::string& word : rest) {
        if (word.size() > 1 && word.starts_with('-'))
            return fmt::format("'{}' has no option '{}'", fullName(command),
                               printable(word.substr(0, word.find('='))));
        if (!verbs.empty())
            return fmt::format("there is no command '{} {}'; expected {}", fullName(command),
                               printable(plain(word)), joinNames(verbs));
        if (!missing)
            return fmt::format("'{}' does not expect '{}'", fullName(command),
                               printable(plain(word)));
    }
    if (missing && !verbs.empty())
        return fmt::format("'{}' lacks what to do; expected {}", fullName(command),
                           joinNames(verbs));
    return error.what();
}

std::string CommandTree::helpOf(const CLI::App& command) const {
    std::string text =
        command.get_formatter()->make_help(&command, fullName(command), CLI::AppFormatMode::Normal);
    for (std::size_t gap = 0; (gap = text.find("\n\n\n", gap)) != std::string::npos;)
        text.erase(gap, 1);
    return text;
}

std::string CommandTree::help(const Words& path) {
    CLI::App* command = &app;
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

CommandTree::Words CommandTree::complete(const Words& before, const std::string& partial) {
    CLI::App* command = &app;
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
    if (value)
        return all;
    if (partial.starts_with('-')) {
        for (const CLI::Option* const option : command->get_options()) {
            for (const std::string& name : option->get_lnames())
                all.push_back("--" + name);
        }
    } else {
        all = position == 0 ? namesOfSubcommands(*command) : Words{};
        const auto arguments = command->get_options(
            [](const CLI::Option* option) { return option->get_positional(); });
        if (!arguments.empty()) {
            const auto found = offered.find(arguments[std::min(position, arguments.size() - 1)]);
            const bool inRange =
                position < arguments.size() || arguments.back()->get_allow_extra_args();
            if (found != offered.end() && inRange)
                all.insert(all.end(), found->second.begin(), found->second.end());
        }
    }
    std::erase_if(all, [&](const std::string& name) { return !name.starts_with(partial); });
    std::ranges::sort(all);
    return all;
}

}  // namespace mngctl
