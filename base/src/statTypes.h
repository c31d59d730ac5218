#pragma once
// The identifiers of the process-wide statistics (StatScalar counts,
// StatInterval times). Each identifier has a counter of each kind; a new
// statistic is one more identifier before NB_IDS and its name below.
namespace Qv {

struct StatTypes {
    enum Id : int {
        FILE_IMPORT_SCALAR_ID,   // image files read
        FILE_IMPORT_INTERVAL_ID, // time spent reading them
        PROXY_TILE_SCALAR_ID,    // proxy tiles filtered from a finer level
        ERROR_TILE_SCALAR_ID,    // error tiles given in place of a failed read
        NB_IDS
    };

    // The name shown in reports, "?" for a value outside the enumeration.
    static char const* getName(Id id);
    static bool isValid(Id id) { return id >= 0 && id < NB_IDS; }
};

} // namespace Qv
