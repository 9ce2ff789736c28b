#include "mngctl/wire/records.h"

namespace mngctl {

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
