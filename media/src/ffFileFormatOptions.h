#pragma once
// The format options of one file format, written as text: "key=value" pairs
// separated by blanks, commas or semicolons, for instance "compression=piz"
// for EXR or "bitdepth=10" for DPX. Each format knows its keys and values;
// FfFileFormatOptionsMgr::createOptions makes them.
#include "rcBase.h"
#include "rcShdPtr.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Qv {

class FfFileFormatOptions : public RCBase<> {
public:
    // One attribute of the image library's file header that an option sets.
    struct Attribute {
        std::string name;
        std::string value;
        bool isInteger = false;
    };

    // Throws FfIOEx::ExBadOptions naming the format, for a key it does not
    // know or a value out of its range; nothing changes then.
    explicit FfFileFormatOptions(std::string formatName, std::string const& text = {});

    std::string const& getFormatName() const { return _formatName; }
    // The options in a canonical form: keys sorted, "key=value" joined by blanks.
    std::string getText() const;
    void setText(std::string const& text);
    std::optional<std::string> getValue(std::string const& key) const;

    // The bits per component the options ask the file to store, if any.
    std::optional<int> getBitDepth() const;
    // The header attributes of the options.
    std::vector<Attribute> getAttributes() const;

    // The keys the format knows, with their accepted values ("1-100" for a range).
    static std::vector<std::pair<std::string, std::string>> describe(std::string const& formatName);

private:
    std::string _formatName;
    std::map<std::string, std::string> _values;
};

using FfFileFormatOptionsPtr = RCShdPtr<FfFileFormatOptions>;

} // namespace Qv
