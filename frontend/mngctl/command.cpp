#include "mngctl/command.h"

#include "mngctl/outcome.h"
#include "mngctl/parser.h"

#include <fmt/format.h>

#include <charconv>

namespace mngctl {

namespace {

std::chrono::milliseconds parseTimeout(const std::string& text) {
    constexpr double shortest = 0.01;
    constexpr double longest = 3600;
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    // Negated, so that "nan" is refused as well.
    if (error != std::errc{} || end != text.data() + text.size() ||
        !(seconds >= shortest && seconds <= longest)) {
        throw CLI::ValidationError(
            "--timeout", fmt::format("expected seconds from {} to {}, not '{}'", shortest, longest,
                                     printable(text)));
    }
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

}  // namespace

void addCommonOptions(CLI::App& command, Settings& settings) {
    const char* const group = commonGroup;
    const auto portNumber = CLI::Range(1, 65535).description("");
    command.set_help_flag("-h,--help", "Print this help")->group(group);
    command.add_flag("--json", settings.json, "Print what was read as JSON")->group(group);
    command.add_flag("-q,--quiet", settings.quiet, "Print nothing after a change")->group(group);
    command.add_option("--host", settings.host, "Name or IPv4 address of the board (127.0.0.1)")
        ->type_name("HOST")
        ->group(group);
    auto* const tcp = command.add_flag_callback(
        "--tcp", [&settings] { settings.protocol = Protocol::Tcp; }, "Talk over TCP (the default)");
    auto* const udp = command.add_flag_callback(
        "--udp", [&settings] { settings.protocol = Protocol::Udp; }, "Talk over UDP");
    // The blank keeps the help from telling what excludes what.
    tcp->group(group)->option_text(" ")->excludes(udp);
    udp->group(group)->option_text(" ");
    command
        .add_option_function<std::string>(
            "--timeout",
            [&settings](const std::string& text) { settings.timeout = parseTimeout(text); },
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
