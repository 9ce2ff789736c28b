#include "mngctl/commands/webState.h"

#include "mngctl/commands/changes.h"
#include "mngctl/events/eventChannel.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

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

}  // namespace

std::shared_ptr<WebPorts> addPortOptions(Command& command) {
    auto ports = std::make_shared<WebPorts>();
    addPortOption(command, "--web-port", ports->page, "web server");
    addEventPortOption(command, ports->events);
    return ports;
}

void addEventPortOption(Command& command, std::uint16_t& port) {
    addPortOption(command, "--event-port", port, "event server");
}

bool readWebServer(Session& session) {
    rpcNetworkHttpResult answer{};
    session.client.call(networkProgram, rpc_network_http_get_1, answer);
    if (answer.result != rpcNetworkDone) {
        throw Refused(fmt::format("the board refused to tell the state of the web server set: {}",
                                  describeOutcome(static_cast<int>(answer.result))));
    }
    return answer.enabled != 0;
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

Json readWebState(Session& session, const WebPorts& ports) {
    const bool on = readWebServer(session);
    return Json{{"on", on},
                {"webServer", readPort(session, ports.page)},
                {"eventServer", readPort(session, ports.events)}};
}

std::string webStateLines(const Json& state) {
    return fmt::format("web server set: {}\n", state["on"].get<bool>() ? "on" : "off") +
           portLine("web server", state["webServer"]) +
           portLine("event server", state["eventServer"]);
}

}  // namespace mngctl
