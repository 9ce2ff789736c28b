#include "mngctl/wire/recordFields.h"

#include <initializer_list>

namespace mngctl {

#define ENUMERATION(type, ...)                                           \
    template <>                                                          \
    std::span<const Choice> choicesOf<type>() {                          \
        static const std::initializer_list<Choice> choices{__VA_ARGS__}; \
        return choices;                                                  \
    }
#define VALUE(enumerator, name) Choice{name, enumerator},
#define OUTCOME(enumerator)

#define RECORD(type, memorySize, wireSize, ...) \
    void fields(FieldVisitor& visit, type& record) { __VA_ARGS__ }
#define NUMBER(name, place) visit.number(#name, record.name);
#define ADDRESS(name, place) visit.address(#name, record.name);
#define FLAG(name, place) visit.flag(#name, record.name);
#define CHOICE(name, place) visit.choice(#name, record.name);
#define STATUS(name, place) visit.status(#name, record.name);
#define FIXED_TEXT(name, place) visit.fixedText(#name, record.name);
#define RENAMED_TEXT(name, clientsName, place) FIXED_TEXT(clientsName, place)
#define TEXT(name, place) visit.text(#name, record.name);
#define LIMITED_TEXT(name, place, maximum) visit.text(#name, record.name, maximum);
#define MAC(name, place) visit.mac(#name, record.name.octets);
#define OCTETS(name, place) visit.mac(#name, record.name);
#define NESTED(name, place) visit.record(#name, record.name);
#define LIST(name, place) visit.list(#name, record.name);
#include "network/rpc/records.def"

void fields(FieldVisitor& visit, controlReply& record) {
    visit.number("result", record.result);
    visit.text("reply", record.reply);
}

void fields(FieldVisitor& visit, controlFeature& record) {
    visit.text("name", record.name);
    visit.flag("on", record.on);
}

void fields(FieldVisitor& visit, controlEntity& record) {
    visit.text("name", record.name);
    visit.text("state", record.state);
}

void fields(FieldVisitor& visit, controlStatus& record) {
    visit.text("shelfId", record.shelfId);
    visit.flag("profileMode", record.profileMode);
    visit.flag("clearConfigInProgress", record.clearConfigInProgress);
    visit.list("features", std::span(record.features.features_val, record.features.features_len));
    visit.list("entities", std::span(record.entities.entities_val, record.entities.entities_len));
}

}  // namespace mngctl
