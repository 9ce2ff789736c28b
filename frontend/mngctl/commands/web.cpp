#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/webState.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

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
    std::string text = fmt::format("the web server set counts as {}, {}, {}", isOn ? "on" : "off",
                                   portState("the event server", state["eventServer"]),
                                   portState("the web server", state["webServer"]));
    if (isOn && !wanted && !hasEvents) {
        text += "; an event server that does not run cannot be ended: start it again first";
    }
    return text;
}

void change(Session& session, const WebPorts& ports, bool on) {
    const bool_t value = on ? TRUE : FALSE;
    carryOut({fmt::format("switch the web server set {}", on ? "on" : "off"),
              request(session, rpc_network_http_server_set_1, value)},
             [&] { return describeInForce(session, ports, on); });
    readBack(session, [&] { show(session, ports); });
}

void addSwitch(Command& noun, bool on) {
    const std::string verb = on ? "on" : "off";
    Command& command = noun.addCommand(
        verb,
        on ? "Start the event server, the web server and the feeder of messages"
           : "End the event server and the web server, and pause the feeder of messages",
        {"web " + verb, "web " + verb + " --json"});
    const auto ports = addPortOptions(command);
    command.setAction([ports, on](Session& session) { change(session, *ports, on); });
}

}  // namespace

void addWeb(CommandTree& tree) {
    Command& noun = tree.addNoun("web", "Web server set: web server, event server, their feeder",
                                 {"web show", "web on", "web off"});

    Command& showCommand = noun.addCommand(
        "show", "Show whether the set was switched on, and which of its ports answer",
        {"web show", "web show --json"});
    const auto ports = addPortOptions(showCommand);
    showCommand.setAction([ports](Session& session) { show(session, *ports); });

    addSwitch(noun, true);
    addSwitch(noun, false);
}

}  // namespace mngctl
