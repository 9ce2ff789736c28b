#pragma once

#include "board/varo/Library.h"
#include "board/varo/store/Group.h"

#include <functional>
#include <utility>

namespace varo {

/// Configuration sources, as they are passed in calls and stored as keys.
enum Source : int {
    libraryChooses = 0,  ///< in reads only
    fromDhcp = 1,        ///< what the DHCP client was told
    fromCli = 2,         ///< what the management front ends have set
};

/// The source when it is one that records are stored for. Throws Failure (noSuchSource).
int storedSource(int source);

/// What the library has to know of a setting, whatever its record is: see allSettings.
struct AnySetting {
    const Table* table = nullptr;
    /// Puts what is stored into force. The caller has the right to change. Throws Failure; the
    /// stored values stay.
    std::function<void(const Library::Change&)> apply{};
    /// When the store is opened, the next setting of the list puts both into force together.
    bool withNext = false;
};

/// Puts a record into force; `stored` reads the one that counts. Throws Failure.
template <class Record>
using Apply = std::function<void(const Library::Change&, const std::function<Record()>& stored)>;

/// Runs what the host has supplied. Throws Failure (applyFailed) with its reason, in which `what`
/// names the settings.
void tellHost(const char* what, const std::function<void()>& applier);

/// Hands the record to the host's applier. Where there is none, nothing is even read.
template <class Record>
Apply<Record> toHost(const char* what, std::function<void(const Record&)> Appliers::* applier) {
    return [=](const Library::Change& change, const std::function<Record()>& stored) {
        if (const auto& supplied = change.configuration().appliers.*applier) {
            const Record record = stored();
            tellHost(what, [&] { supplied(record); });
        }
    };
}

/// A setting whose values are one record: its table and factory values, its checks, what puts it
/// into force, and its calls.
///
/// Settings are made on first use, so that calls are answered before main() as well, and never
/// destroyed, so that they are while the process ends.
template <class Record>
class Setting : public AnySetting {
public:
    struct Definition {
        Group<Record> group;
        /// Throws Failure (invalidValue) for a record that is not to be stored.
        void (*check)(const Record&) = [](const Record&) {};
        /// Fills in what is not stored.
        void (*complete)(Record&) = [](Record&) {};
        Apply<Record> apply = [](const auto&, const auto&) {};
        bool withNext = false;  ///< see AnySetting
    };

    explicit Setting(Definition given) : definition(std::move(given)) {
        table = &definition.group;
        withNext = definition.withNext;
        apply = [this](const Library::Change& change) {
            definition.apply(change, [&] { return stored(change.store()); });
        };
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    const Group<Record>& group() const { return definition.group; }
    const Record& factory() const { return definition.group.factory(); }
    /// Throws Failure.
    Record stored(RecordStore& store) const {
        Record record = store.session().read(definition.group);
        definition.complete(record);
        return record;
    }

    /// Stores a record that was checked, and puts it into force. Throws Failure.
    void store(const Library::Change& change, const Record& record) const {
        change.store().session().write(definition.group, singleRow, record);
        apply(change);
    }

    /// Edits the stored record with nobody else's changes in between, and puts it into force.
    /// Nothing is stored when `edit` throws. Throws Failure.
    template <class Edit>
    void change(Edit edit) const {
        const auto change = Library::instance().change();
        {
            auto session = change.store().session();
            Record record = session.read(definition.group);
            edit(record);
            session.write(definition.group, singleRow, record);
        }
        apply(change);
    }

    // The calls that most settings have. Each returns the result of the call.

    int read(const char* call, Record* record) const {
        return answer(call, [&] {
            Record& read = required(record);
            read = stored(Library::instance().opened()->store);
        });
    }

    int update(const char* call, const Record* record) const {
        return answer(call, [&] {
            const Record& given = required(record);
            definition.check(given);
            store(Library::instance().change(), given);
        });
    }

    int fillFactory(const char* call, Record* record) const {
        return answer(call, [&] { required(record) = factory(); });
    }

private:
    const Definition definition;
};

/// A setting that has a record for each configuration source. In force is what was set by hand, and
/// what was learnt where that names nothing.
template <class Record>
class SettingBySource : public AnySetting {
public:
    struct Definition {
        Group<Record> group;
        bool (*namesAnything)(const Record&);
        /// Fills in what is not stored.
        void (*complete)(Record&, int source) = [](Record&, int) {};
        Apply<Record> apply = [](const auto&, const auto&) {};
        bool withNext = false;  ///< see AnySetting
    };

    explicit SettingBySource(Definition given) : definition(std::move(given)) {
        table = &definition.group;
        withNext = definition.withNext;
        apply = [this](const Library::Change& change) {
            definition.apply(change, [&] {
                auto session = change.store().session();
                return inForce(session).record;
            });
        };
    }
    SettingBySource(const SettingBySource&) = delete;
    SettingBySource& operator=(const SettingBySource&) = delete;

    const Group<Record>& group() const { return definition.group; }

    struct InForce {
        int source;
        Record record;
    };
    InForce inForce(RecordStore::Session& session) const {
        const Record byCli = of(session, fromCli);
        if (!definition.namesAnything(byCli)) {
            const Record learnt = of(session, fromDhcp);
            if (definition.namesAnything(learnt)) {
                return {fromDhcp, learnt};
            }
        }
        return {fromCli, byCli};
    }

    /// The record of the source, or with libraryChooses the one in force, whose source is then set.
    /// Throws Failure; the source stays.
    Record stored(int& source) const {
        const auto opened = Library::instance().opened();
        auto session = opened->store.session();
        if (source != libraryChooses) {
            return of(session, storedSource(source));
        }
        const InForce chosen = inForce(session);
        source = chosen.source;
        return chosen.record;
    }

    /// Stores a record that was checked, of a source that was, and puts the one in force into
    /// force. Throws Failure.
    void store(const Library::Change& change, int source, const Record& record) const {
        change.store().session().write(definition.group, source, record);
        apply(change);
    }

    // Calls. Each returns the result of the call.

    int read(const char* call, int* source, Record* record) const {
        return answer(call, [&] {
            int& wanted = required(source);
            Record& read = required(record);
            read = stored(wanted);
        });
    }

    int update(const char* call, int source, const Record* record) const {
        return answer(call, [&] {
            const Record& given = required(record);
            const int row = storedSource(source);
            store(Library::instance().change(), row, given);
        });
    }

    int fillFactory(const char* call, int source, Record* record) const {
        return answer(call, [&] {
            Record& filled = required(record);
            storedSource(source);
            filled = definition.group.factory();
            definition.complete(filled, source);
        });
    }

private:
    const Definition definition;

    Record of(RecordStore::Session& session, int source) const {
        Record record = session.read(definition.group, source);
        definition.complete(record, source);
        return record;
    }
};

}  // namespace varo
