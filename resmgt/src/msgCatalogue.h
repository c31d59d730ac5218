#pragma once
// One message catalogue: the `ID = text` lines of a `.msg` file, read once.
#include <filesystem>
#include <istream>
#include <map>
#include <string>
#include <string_view>

namespace Qv {

class MsgCatalogue {
public:
    // Reads a catalogue file. Throws MsgEx::ExCatalogueNotFound when it cannot be
    // opened and MsgEx::ExMalformedCatalogue on the first bad line.
    static MsgCatalogue load(std::filesystem::path const& path);
    // Reads catalogue text; `sourceName` names it in errors.
    static MsgCatalogue parse(std::istream& in, std::string sourceName);

    // Where the catalogue was read from: the path given to load, or the source name.
    std::string const& getName() const { return _name; }
    // The raw text of an id, or null when the catalogue lacks it.
    std::string const* find(std::string_view id) const;
    std::map<std::string, std::string, std::less<>> const& getEntries() const { return _entries; }

private:
    explicit MsgCatalogue(std::string name) : _name(std::move(name)) {}

    std::string _name;
    std::map<std::string, std::string, std::less<>> _entries;
};

} // namespace Qv
