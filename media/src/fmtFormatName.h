#pragma once
// An entry of a table of named formats, such as the video formats: its fields
// as texts, field 0 the name. Tables are found by their type.
#include <string>
#include <vector>

namespace Qv {

class FmtFormatName {
public:
    // A filter field that matches any value.
    static std::string const All;

    explicit FmtFormatName(std::vector<std::string> fields) : _fields(std::move(fields)) {}

    std::string const& getName() const { return _fields.front(); }
    int getNbFields() const { return static_cast<int>(_fields.size()); }
    // Empty for a field the entry does not have.
    std::string const& getFieldValue(int field) const;

    // The entries of the table of that type, in the table's order, whose
    // fields equal the filter's one by one; All, or a filter shorter than the
    // entry, matches the rest. An unknown type has no entries.
    static std::vector<FmtFormatName> getFilteredList(std::string const& type,
                                                      std::vector<std::string> const& filter);

private:
    std::vector<std::string> _fields;
};

} // namespace Qv
