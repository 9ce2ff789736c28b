#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/control.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/recordFields.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

Json readStatus(Session& session) {
    Decoded<controlStatus> status(xdr_controlStatus);
    session.client.call(controlProgram, bll_get_status_1, *status);
    return toJson(*status);
}

// A line of the status, each for itself, for the command that changes what it tells.

std::string shelfLine(const Json& status) {
    return fmt::format("shelf: {}\n", shown(status["shelfId"]));
}

std::string profileLine(const Json& status) {
    return fmt::format("profile mode: {}\n", onOff(status["profileMode"].get<bool>()));
}

std::string clearConfigLine(const Json& status) {
    return fmt::format("clear-config: {}\n", status["clearConfigInProgress"].get<bool>()
                                                 ? "in progress"
                                                 : "not in progress");
}

std::string featureLines(const Json& status, const std::string& name) {
    std::string lines;
    for (const Json& feature : status["features"]) {
        if (name.empty() || feature["name"] == name) {
            lines += fmt::format("feature {}: {}\n", shown(feature["name"]),
                                 onOff(feature["on"].get<bool>()));
        }
    }
    return lines;
}

std::string entityLines(const Json& status) {
    std::string lines;
    for (const Json& entity : status["entities"]) {
        lines += fmt::format("entity {}: {}\n", shown(entity["name"]), shown(entity["state"]));
    }
    return lines;
}

std::string allLines(const Json& status) {
    return shelfLine(status) + profileLine(status) + clearConfigLine(status) +
           featureLines(status, "") + entityLines(status);
}

void showAfterChange(Session& session, const std::function<std::string(const Json&)>& lines) {
    readBack(session, [&](Session&) {
        const Json status = readStatus(session);
        session.print(status, lines(status));
    });
}

void addMessage(Command& noun) {
    Command& command = noun.addCommand(
        "message", "Hand an external message to the entities and print their reply",
        {"board message networkBle_severity 7", "board message varoLib_severity 3"});
    const Argument& name = command.addArgument("NAME", "Name of the message");
    const Argument& value = command.addArgument("VALUE", "Its value");
    command.setAction([&](Session& session) {
        std::string nameText = name.one();
        std::string valueText = value.one();
        controlMessage message{nameText.data(), valueText.data()};
        const std::string reply =
            ask(session, "hand the message on", bll_external_message_1, message);
        printReply(session, reply, "");
    });
}

void addShelf(Command& noun) {
    Command& command =
        noun.addCommand("shelf", "Change the identity of the shelf", {"board shelf 2"});
    const Argument& id = command.addArgument("ID", "The new identity");
    command.setAction([&](Session& session) {
        std::string text = id.one();
        if (text.size() > loneTextMaximum) {
            throw UsageError(fmt::format("the identity has at most {} bytes, this one has {}",
                                         loneTextMaximum, text.size()));
        }
        char* argument = text.data();
        ask(session, "change the shelf's identity", bll_set_shelf_id_1, argument);
        showAfterChange(session, shelfLine);
    });
}

void addFeature(Command& noun) {
    Command& command = noun.addCommand("feature", "Switch a feature of the board on or off",
                                       {"board feature httpserver off", "board feature 12 on"});
    const Argument& name = command.addArgument("NAME", "Name or decimal number of the feature");
    const Argument& state = command.addArgument("STATE", "on or off", {"on", "off"});
    command.setAction([&](Session& session) {
        std::string text = name.one();
        controlFeature feature{text.data(), parseFlag(state.one()) ? TRUE : FALSE};
        ask(session, "switch the feature", bll_set_feature_1, feature);
        showAfterChange(session, [&](const Json& status) { return featureLines(status, text); });
    });
}

void addProfile(Command& noun) {
    Command& command =
        noun.addCommand("profile", "Switch profile mode on or off", {"board profile on"});
    const Argument& state = command.addArgument("STATE", "on or off", {"on", "off"});
    command.setAction([&](Session& session) {
        bool_t on = parseFlag(state.one()) ? TRUE : FALSE;
        ask(session, "switch profile mode", bll_set_profile_mode_1, on);
        showAfterChange(session, profileLine);
    });
}

void addClearConfig(Command& noun) {
    Command& command = noun.addCommand("clear-config", "Start or finish a clear-configuration",
                                       {"board clear-config start", "board clear-config finish"});
    const Argument& step = command.addArgument("STEP", "start or finish", {"start", "finish"});
    command.setAction([&](Session& session) {
        const std::string text = step.one();
        if (text != "start" && text != "finish") {
            throw UsageError(fmt::format("expected start or finish, not '{}'", printable(text)));
        }
        bool_t start = text == "start" ? TRUE : FALSE;
        ask(session, fmt::format("{} the clear-configuration", text), bll_set_clear_config_1,
            start);
        showAfterChange(session, clearConfigLine);
    });
}

}  // namespace

void printReply(Session& session, const std::string& reply, const std::string& otherwise) {
    std::string lines;
    for (std::size_t begin = 0; begin < reply.size();) {
        const std::size_t end = std::min(reply.find('\n', begin), reply.size());
        lines += printable(std::string_view(reply).substr(begin, end - begin)) + "\n";
        begin = end + 1;
    }
    if (lines.empty() && !otherwise.empty()) {
        lines = otherwise + "\n";
    }
    session.print(Json{{"reply", validUtf8(reply)}}, lines);
}

void addBoard(CommandTree& tree) {
    Command& noun = tree.addNoun(
        "board", "The board's business-logic process",
        {"board status", "board feature httpserver off", "board message networkBle_severity 7"});

    noun.addShow("status", "Show the shelf, the modes, the features and the state of the entities",
                 [](Session& session) {
                     const Json json = readStatus(session);
                     session.print(json, allLines(json));
                 });

    addMessage(noun);
    addShelf(noun);
    addFeature(noun);
    addProfile(noun);
    addClearConfig(noun);

    noun.addCommand("stop", "Ask the business-logic process for an orderly end", {"board stop"},
                    [](Session& session) {
                        const std::string reply = ask(session, "stop", bll_stop_1);
                        readBack(session, [&](Session&) {
                            printReply(session, reply, "the board is stopping");
                        });
                    });
}

}  // namespace mngctl
