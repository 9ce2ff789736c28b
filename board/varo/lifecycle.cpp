#include "board/varo/Library.h"
#include "varo/varoLib.h"

/// Opens the store, unless a call made before has done so, and applies what is stored. With result
/// varo::applyFailed the library is open nevertheless, and answers calls.
int varoLibInit() {
    return varo::guarded(__func__, [] { varo::Library::instance().open(); });
}

/// Waits for the calls that are under way, and closes the file with everything in it.
void varoLibDestroy() {
    varo::guarded(__func__, [] { varo::Library::instance().close(); });
}
