#pragma once

#include "board/varo/Library.h"
#include "board/varo/settings/applyServices.h"

namespace varo {

// The calls of groups that hold one record. Each returns the result of the call.

template <class Record>
int readSingle(const char* call, const Group<Record>& group, Record* record) {
    return answer(call, [&] {
        Record& read = required(record);
        const auto opened = Library::instance().opened();
        read = opened->store.session().read(group);
    });
}

template <class Record>
int fillFactory(const char* call, const Group<Record>& group, Record* record) {
    return answer(call, [&] { required(record) = group.factory(); });
}

/// Stores and applies a record that `check` has no objection to; it throws Failure.
template <class Record>
int updateSingle(const char* call, const Group<Record>& group, const Record* record,
                 void (&check)(const Record&), StoredApplier& applier) {
    return answer(call, [&] {
        const Record& given = required(record);
        check(given);
        const auto change = Library::instance().change();
        change.store().session().write(group, singleRow, given);
        applier(change.store(), change.configuration());
    });
}

/// Changes the stored record with nobody else's changes in between. Nothing is stored when `edit`
/// throws.
template <class Record, class Edit>
void changeSingle(const Group<Record>& group, StoredApplier& applier, Edit edit) {
    const auto change = Library::instance().change();
    {
        auto session = change.store().session();
        Record record = session.read(group);
        edit(record);
        session.write(group, singleRow, record);
    }
    applier(change.store(), change.configuration());
}

}  // namespace varo
