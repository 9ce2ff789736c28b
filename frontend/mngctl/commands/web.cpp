#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/events/eventChannel.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

/// Where the web server set is reached.
struct WebPorts {
    std::uint16_t page = 80;
    std::uint16_t events = 8080;
};

/// A port that answers does so at once; one behind a filter never does.
constexpr std::chrono::milliseconds portPatience{3000};

void addPortOption(Command& command, const char* name, std::uint16_t& port,
                   const std::string& what) {
    command.addNumber<std::uint16_t>(name, port, {1, 65535}, "PORT",
                                     fmt::format("Port of the {} ({})", what, port));
}

Json readPort(Session& session, std::uint16_t port) {
    const auto patience = std::min(session.settings.timeout, portPatience);
    return Json{{"port", port}, {"answers", answersAt(session.settings.host, port, patience)}};
}

std::string portLine(std::string_view what, const Json& state) {
    return fmt::format("{}: {} at port {}\n", what,
                       state["answers"].get<bool>() ? "answers" : "no answer",
                       state["port"].get<int>());
}

/// Adds the options that name the ports to a command.
std::shared_ptr<WebPorts> addPortOptions(Command& command) {
    auto ports = std::make_shared<WebPorts>();
    addPortOption(command, "--web-port", ports->page, "web server");
    addEventPortOption(command, ports->events);
    return ports;
}

/// Whether the board remembers to have switched the web server set on.
bool readWebServer(Session& session) {
    const auto answer = session.ask(rpc_network_http_get_1);
    if (answer.result != rpcNetworkDone) {
        throw Refused(fmt::format("the board refused to tell the state of the web server set: {}",
                                  describeOutcome(static_cast<int>(answer.result))));
    }
    return answer.enabled != 0;
}

/// What the board remembers, and what is found at the ports.
Json readWebState(Session& session, const WebPorts& ports) {
    const bool on = readWebServer(session);
    return Json{{"on", on},
                {"webServer", readPort(session, ports.page)},
                {"eventServer", readPort(session, ports.events)}};
}

std::string webStateLines(const Json& state) {
    return fmt::format("web server set: {}\n", onOff(state["on"].get<bool>())) +
           portLine("web server", state["webServer"]) +
           portLine("event server", state["eventServer"]);
}

void show(Session& session, const WebPorts& ports) {
    const Json state = readWebState(session, ports);
    session.print(state, webStateLines(state));
}

std::string portState(std::string_view what, const Json& state) {
    return fmt::format("{} {} at port {}", what,
                       state["answers"].get<bool>() ? "answers" : "does not answer",
                       state["port"].get<int>());
}

/// The board starts and ends the event server before the web server, and gives up at the first that
/// fails.
std::string describeInForce(Session& session, const WebPorts& ports, bool wanted) {
    const Json state = readWebState(session, ports);
    const bool isOn = state["on"].get<bool>();
    const bool hasEvents = state["eventServer"]["answers"].get<bool>();
    std::string text = fmt::format("the web server set counts as {}, {}, {}", onOff(isOn),
                                   portState("the event server", state["eventServer"]),
                                   portState("the web server", state["webServer"]));
    if (isOn && !wanted && !hasEvents) {
        text += "; an event server that does not run cannot be ended: start it again first";
    }
    return text;
}

void change(Session& session, const WebPorts& ports, bool on) {
    carryOut({"switch the web server set " + onOff(on),
              request(session, rpc_network_http_server_set_1, on ? TRUE : FALSE)},
             [&] { return describeInForce(session, ports, on); });
    readBack(session, [&](Session&) { show(session, ports); });
}

void addSwitch(Command& noun, bool on) {
    Command& command = noun.addShow(
        onOff(on),
        on ? "Start the event server, the web server and the feeder of messages"
           : "End the event server and the web server, and pause the feeder of messages");
    const auto ports = addPortOptions(command);
    command.setAction([ports, on](Session& session) { change(session, *ports, on); });
}

}  // namespace

void addEventPortOption(Command& command, std::uint16_t& port) {
    addPortOption(command, "--event-port", port, "event server");
}

std::string explainNoChannel(Session& session) {
    try {
        return readWebServer(session)
                   ? "the web server set is on; 'mngctl web show' tells whether its ports answer"
                   : "the web server set is off; 'mngctl web on' switches it on";
    } catch (const Failure& failure) {
        return fmt::format("whether the web server set is on could not be read: {}",
                           failure.what());
    }
}

void addWeb(CommandTree& tree) {
    Command& noun = tree.addNoun("web", "Web server set: web server, event server, their feeder",
                                 {"web show", "web on", "web off"});

    Command& showCommand =
        noun.addShow("show", "Show whether the set was switched on, and which of its ports answer");
    const auto ports = addPortOptions(showCommand);
    showCommand.setAction([ports](Session& session) { show(session, *ports); });

    addSwitch(noun, true);
    addSwitch(noun, false);
}

}  // namespace mngctl
