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

}  // namespace mngctl
