#include "board/framework/settingsDocument.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace framework {

namespace {

using nlohmann::json;

constexpr std::size_t shelfIdLimit = 255;
constexpr int indentation = 4;
/// A document without a version is of this one.
constexpr int thisVersion = 1;

constexpr const char* shelfIdMember = "shelfId";
constexpr const char* profileModeMember = "profileMode";
constexpr const char* featuresMember = "features";
constexpr const char* ontVlanMember = "ontManagementVlan";

bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7f;
}

bool isUtf8(const std::string& text) {
    try {
        json(text).dump();
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

const json& checkObject(const json& value, const char* what) {
    if (!value.is_object()) {
        throw std::runtime_error(std::string(what) + " is not a JSON object");
    }
    return value;
}

StoredSettings parseSettings(const std::string& document) {
    const json root = support::parseDocument(document, thisVersion, support::Unversioned::first);
    checkObject(root, "the document");
    SettingsValues values;
    if (const auto found = root.find(shelfIdMember); found != root.end()) {
        found->get_to(values.shelfId);
        if (const std::string objection = objectionToShelfId(values.shelfId); !objection.empty()) {
            throw std::runtime_error("the shelf identity is not valid: " + objection);
        }
    }
    if (const auto found = root.find(profileModeMember); found != root.end()) {
        found->get_to(values.profileMode);
    }
    if (const auto found = root.find(featuresMember); found != root.end()) {
        checkObject(*found, featuresMember);
        for (auto& [name, on] : values.features) {
            if (const auto feature = found->find(name); feature != found->end()) {
                feature->get_to(on);
            }
        }
    }
    if (const auto found = root.find(ontVlanMember); found != root.end()) {
        if (!found->is_number_unsigned() || *found < firstVlan || *found > lastVlan) {
            throw std::runtime_error("the VLAN of the ONTs is not a number from 1 to 4094");
        }
        found->get_to(values.ontManagementVlan);
    }
    return {std::move(values), document};
}

std::string formatSettings(const StoredSettings& stored) {
    json root = stored.document.empty() ? json::object() : json::parse(stored.document);
    const SettingsValues& values = stored.values;
    root[shelfIdMember] = values.shelfId;
    root[profileModeMember] = values.profileMode;
    root[ontVlanMember] = values.ontManagementVlan;
    for (const auto& [name, on] : values.features) {
        root[featuresMember][name] = on;
    }
    return root.dump(indentation) + "\n";
}

}  // namespace

std::string objectionToShelfId(const std::string& id) {
    if (id.size() > shelfIdLimit) {
        return "it is longer than " + std::to_string(shelfIdLimit) + " characters";
    }
    if (std::ranges::any_of(id, isControl)) {
        return "it contains a control character";
    }
    return isUtf8(id) ? "" : "it is not UTF-8";
}

const support::StateFormat<StoredSettings> settingsFormat{
    .fileName = "framework.json",
    .damageText =
        "{file} is damaged and was renamed to {keptName}; factory settings are used: "
        "{reason}",
    .parse = parseSettings,
    .format = formatSettings,
};

}  // namespace framework
