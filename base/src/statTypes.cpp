#include "statTypes.h"

namespace Qv {

char const* StatTypes::getName(Id id) {
    switch (id) {
    case FILE_IMPORT_SCALAR_ID:
        return "FileImport";
    case FILE_IMPORT_INTERVAL_ID:
        return "FileImportTime";
    case PROXY_TILE_SCALAR_ID:
        return "ProxyTile";
    case ERROR_TILE_SCALAR_ID:
        return "ErrorTile";
    case NB_IDS:
        break;
    }
    return "?";
}

} // namespace Qv
