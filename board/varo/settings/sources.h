#pragma once

#include "board/varo/store/RecordStore.h"
#include "board/varo/varoCodes.h"

namespace varo {

/// Configuration sources, as they are passed in calls and stored as keys.
enum Source : int {
    libraryChooses = 0,  ///< in reads only
    fromDhcp = 1,        ///< what the DHCP client was told
    fromCli = 2,         ///< what the management front ends have set
};

/// The source when it is one that records are stored for. Throws Failure (noSuchSource).
int storedSource(int source);

/// The record in force: what was set by hand goes before what was learnt, as long as it names
/// anything. The source is set to that of the returned record.
template <class Record>
Record readInForce(RecordStore::Session& session, const Group<Record>& group, int& source,
                   bool (&namesAnything)(const Record&)) {
    const Record byCli = session.read(group, fromCli);
    source = fromCli;
    if (namesAnything(byCli)) {
        return byCli;
    }
    const Record byDhcp = session.read(group, fromDhcp);
    if (!namesAnything(byDhcp)) {
        return byCli;
    }
    source = fromDhcp;
    return byDhcp;
}

/// Reads the record of the source, or with libraryChooses the one in force. Source and record are
/// set together, and left alone on failure. Throws Failure.
template <class Record>
void readBySource(RecordStore& store, const Group<Record>& group, int& source, Record& record,
                  bool (&namesAnything)(const Record&)) {
    auto session = store.session();
    if (source != libraryChooses) {
        record = session.read(group, storedSource(source));
        return;
    }
    int chosen = fromCli;
    record = readInForce(session, group, chosen, namesAnything);
    source = chosen;
}

}  // namespace varo
