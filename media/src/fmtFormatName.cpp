#include "fmtFormatName.h"

#include "fmtVideoFormat.h"

namespace Qv {

std::string const FmtFormatName::All = "*";

std::string const& FmtFormatName::getFieldValue(int field) const {
    static std::string const none;
    return field >= 0 && field < getNbFields() ? _fields[static_cast<std::size_t>(field)] : none;
}

std::vector<FmtFormatName> FmtFormatName::getFilteredList(std::string const& type,
                                                          std::vector<std::string> const& filter) {
    std::vector<FmtFormatName> found;
    if (type != FmtVideoFormat::TYPE)
        return found;
    for (FmtFormatName const& entry : FmtVideoFormat::getTable()) {
        bool matches = true;
        for (std::size_t i = 0; i < filter.size() && matches; ++i)
            matches = filter[i] == All || filter[i] == entry.getFieldValue(static_cast<int>(i));
        if (matches)
            found.push_back(entry);
    }
    return found;
}

} // namespace Qv
