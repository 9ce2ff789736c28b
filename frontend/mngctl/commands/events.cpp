#include "mngctl/commands/commands.h"
#include "mngctl/events/eventChannel.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

struct Options {
    std::uint16_t port = 8080;
    std::string certificate = "/etc/apache2/server.crt";
    std::size_t count = 0;  ///< 0 follows without end
};

Json textOrNull(const std::optional<std::string>& text) {
    return text ? Json(validUtf8(*text)) : Json();
}

std::string jsonLine(const Event& event) {
    const Notification told = readNotification(event.text);
    const Json json{{"id", validUtf8(event.id)},
                    {"name", validUtf8(event.name)},
                    {"time", textOrNull(told.time)},
                    {"restartCause", textOrNull(told.restartCause)},
                    {"text", validUtf8(event.text)}};
    return json.dump() + "\n";
}

std::string textLine(const Event& event) {
    const Notification told = readNotification(event.text);
    const std::string time = told.time ? printable(*told.time) + "  " : "";
    if (!told.restartCause) {
        return time + printable(event.text) + "\n";
    }
    const std::string cause =
        told.restartCause->empty() ? "no cause recorded" : printable(*told.restartCause);
    return fmt::format("{}restarted: {}{}\n", time, cause,
                       told.isCutOff ? " [cut off by the board]" : "");
}

void follow(Session& session, const Options& options) {
    const Settings& settings = session.settings;
    std::size_t count = 0;
    const ChannelObserver observer{
        [&] {
            if (session.streams.terminal && !settings.json && !settings.quiet) {
                session.streams.err << "mngctl: following the board's events; Ctrl-C ends it\n"
                                    << std::flush;
            }
        },
        [&](const Event& event) {
            session.streams.out << (settings.json ? jsonLine(event) : textLine(event));
            session.streams.out.flush();
            ++count;
            return session.streams.out.good() && count != options.count;
        }};
    try {
        followEvents({settings.host, options.port, options.certificate, settings.timeout},
                     observer);
    } catch (const ChannelFailure& failure) {
        throw NoAnswer(fmt::format("{}; {}", failure.what(), explainNoChannel(session)));
    }
}

}  // namespace

void addEvents(CommandTree& tree) {
    Command& command = tree.addCommand(
        "events", "Follow the events that the board pushes to browsers, until Ctrl-C",
        {"events", "events --json            (one object a line)", "events --count 1",
         "events --host 192.0.2.10 --certificate board.crt"});
    const auto options = std::make_shared<Options>();
    addEventPortOption(command, options->port);
    command.addOption("--certificate", options->certificate, "FILE",
                      "PEM file with the event server's certificate (/etc/apache2/server.crt)");
    command.addNumber<std::size_t>("--count", options->count, {1, 1'000'000}, "N",
                                   "End after so many events, those kept included");
    command.setAction([options](Session& session) { follow(session, *options); });
}

}  // namespace mngctl
