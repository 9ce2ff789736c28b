#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/outcome.h"
#include "mngctl/procedures.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

struct Options {
    bool list = false;
    bool dryRun = false;
};

std::string resultUsage(const Procedure& procedure) {
    return procedure.resultType == "void" ? "nothing" : std::string(procedure.resultType);
}

Json describe(const Procedure& procedure) {
    return Json{
        {"number", procedure.number},
        {"name", procedure.name},
        {"argument", {{"type", procedure.argumentType}, {"fields", procedure.describeArgument()}}},
        {"result", {{"type", procedure.resultType}, {"fields", procedure.describeResult()}}}};
}

/// One line for each field, as the text of a result has them.
void addFieldLines(std::string& lines, const std::string& path, const Json& described) {
    for (const Json& field : described) {
        const std::string name = path + field["name"].get<std::string>();
        if (field.contains("count")) {
            addFieldLines(lines,
                          fmt::format("{}[0..{}].", name, field["count"].get<unsigned>() - 1),
                          field["fields"]);
        } else if (field.contains("fields")) {
            addFieldLines(lines, name + ".", field["fields"]);
        } else if (field.contains("maximum")) {
            lines += fmt::format("    {}: text of at most {} bytes\n", name,
                                 field["maximum"].get<unsigned>());
        } else {
            lines += fmt::format("    {}: {}\n", name, field["type"].get<std::string>());
        }
    }
}

void listOne(Session& session, const Procedure& procedure) {
    std::string text = fmt::format("{} {}\n  argument: {}\n", procedure.number, procedure.name,
                                   argumentUsage(procedure));
    addFieldLines(text, "", procedure.describeArgument());
    text += fmt::format("  result: {}\n", resultUsage(procedure));
    addFieldLines(text, "", procedure.describeResult());
    session.print(describe(procedure), text);
}

void listAll(Session& session) {
    Json json = Json::array();
    std::string text =
        fmt::format("{:>3}  {:<28}  {:<28}  {}\n", "No.", "Name", "Result", "Argument");
    for (const Procedure& procedure : procedures()) {
        json.push_back(describe(procedure));
        // What the text of one procedure tells in full is shortened here to keep the columns.
        std::string argument = argumentUsage(procedure);
        argument = argument.substr(0, argument.find(", or one JSON"));
        text += fmt::format("{:>3}  {:<28}  {:<28}  {}\n", procedure.number, procedure.name,
                            resultUsage(procedure), argument);
    }
    session.print(json, text);
}

void call(Session& session, const Procedure& procedure, const Json& argument) {
    const Json result = procedure.call(session.client, argument);
    session.print(result, result.empty() ? "answered\n" : toLines(result));
    const int outcome = refusal(procedure, result);
    if (outcome != 0) {
        throw Refused(
            fmt::format("the board refused {}: {}", procedure.name, describeOutcome(outcome)));
    }
}

void run(Session& session, const Options& options, const std::string& name,
         const std::vector<std::string>& words) {
    if (name.empty() && options.list) {
        return listAll(session);
    }
    if (name.empty()) {
        throw UsageError("expected the name of a procedure; 'mngctl rpc --list' shows all");
    }
    const Procedure& procedure = findProcedure(name);
    if (options.list) {
        return listOne(session, procedure);
    }
    const Json argument = argumentFromWords(procedure, words);
    if (options.dryRun) {
        const Json checked = procedure.checkArgument(argument);
        return session.print(checked, toLines(checked));
    }
    call(session, procedure, argument);
}

}  // namespace

void addRpc(CommandTree& tree) {
    Command& command = tree.addCommand(
        "rpc", "Call any procedure of the network program by its name",
        {"rpc --list                          (all procedures)",
         "rpc --list set_dns_servers          (one, with its fields)", "rpc get_network_info",
         "rpc set_dns_servers 192.0.2.1 192.0.2.2", "rpc set_timezone_offset -3600",
         "rpc snmptrap_add -- -name- 192.0.2.9 on      (-- ends the options)",
         "rpc sntp_update '{\"mode\":1,\"servers\":[{\"ipAddress\":\"192.0.2.1\"}]}'"});
    const auto options = std::make_shared<Options>();
    std::vector<std::string> names;
    for (const Procedure& procedure : procedures()) {
        names.emplace_back(procedure.name);
    }
    const Argument& name =
        command.addOptionalArgument("NAME", "Name of the procedure", std::move(names));
    const Argument& words = command.addArguments(
        "ARG",
        "The argument: its fields in their order, or a record as one JSON object, in which fields "
        "that are left out are 0, off or empty");
    command.addFlag("--list", options->list, "List the procedures, or describe the named one");
    command.addFlag("--dry-run", options->dryRun,
                    "Check the argument and print what would be sent");
    command.setAction([options, &name, &words](Session& session) {
        run(session, *options, name.one(), words.given());
    });
}

}  // namespace mngctl
