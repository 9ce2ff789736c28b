#include "mngctl/commands/commands.h"
#include "mngctl/commands/texts.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace mngctl {

namespace {

/// What the board says of something that it does not know.
constexpr std::string_view notAvailable = "n/a";

/// A board that gave one line again and again would otherwise never be done.
constexpr int componentMaximum = 100'000;

Json knownOrNull(const std::string& text) { return text == notAvailable ? Json() : Json(text); }

void show(Session& session) {
    const auto software = session.ask(rpc_network_get_sw_data_1);
    const auto package = session.ask(rpc_network_get_package_data_1);
    const std::vector<std::array<std::string, 3>> rows = {
        {"product", "product", textOf(software.product)},
        {"buildDirectory", "built in", textOf(software.buildDirectory)},
        {"buildTime", "built at", textOf(software.buildTime)},
        {"upgradeProduct", "product after an upgrade", textOf(software.upgradeProduct)},
        {"packageRelease", "package release", textOf(software.packageRelease)},
        {"osRelease", "operating system", textOf(software.osRelease)},
        {"fileSystem", "file system", textOf(software.fileSystem)},
        {"bootLoader", "boot loader", textOf(software.bootLoader)},
        {"recoveryFileSystem", "recovery file system", textOf(software.recoveryFileSystem)},
        {"platform", "platform", textOf(package.name)},
        {"platformRelease", "platform release", textOf(package.release)}};
    Json json;
    std::string lines;
    for (const auto& [key, label, text] : rows) {
        json[key] = knownOrNull(text);
        lines += fmt::format("{}: {}\n", label, printable(text));
    }
    session.print(json, lines);
}

std::vector<std::string> readComponents(Session& session, Stub<int, rpcNetworkSWVersionComp> stub) {
    std::vector<std::string> components;
    for (int index = 0, count = 0;; ++count) {
        const auto component = session.ask(stub, index);
        if (component.index < 0) {
            return components;
        }
        if (component.index <= index || count >= componentMaximum) {
            throw NoAnswer("the board's list of components does not end");
        }
        components.push_back(textOf(component.line));
        index = component.index;
    }
}

std::string section(const std::string& title, const std::vector<std::string>& components) {
    std::string lines = fmt::format("{}:{}\n", title, components.empty() ? " none known" : "");
    for (const std::string& component : components) {
        lines += fmt::format("  {}\n", printable(component));
    }
    return lines;
}

void showComponents(Session& session) {
    const auto application = readComponents(session, rpc_network_get_sw_comp_apl_data_1);
    const auto platform = readComponents(session, rpc_network_get_sw_comp_plat_data_1);
    session.print(Json{{"application", application}, {"platform", platform}},
                  section("application", application) + section("platform", platform));
}

}  // namespace

void addVersion(CommandTree& tree) {
    Command& noun = tree.addNoun("version", "Software that runs on the board",
                                 {"version show", "version components"});
    noun.addShow("show", "Show the versions of product, system and boot loader", show);
    noun.addShow("components",
                 "List the components of application and platform; the board looks for them "
                 "when it is first returned to factory settings after a start",
                 showComponents);
}

}  // namespace mngctl
