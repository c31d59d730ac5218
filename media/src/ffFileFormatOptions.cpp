#include "ffFileFormatOptions.h"

#include "ffIOEx.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace Qv {

namespace {

// An option of a format: its key, its accepted values (words, or a range of
// whole numbers), and the header attribute it sets.
struct OptionSpec {
    char const* format;
    char const* key;
    std::vector<std::string> words; // empty: a whole number in [low, high]
    int low = 0;
    int high = 0;
    char const* attribute = nullptr; // null: read by the writer itself (bit depth)
    char const* valuePrefix = "";    // prepended to the value in the attribute
};

std::vector<OptionSpec> const& specs() {
    static std::vector<OptionSpec> const table{
        {"EXR",
         "compression",
         {"none", "rle", "zips", "zip", "piz", "pxr24", "b44", "b44a", "dwaa", "dwab"},
         0,
         0,
         "compression"},
        {"TIFF", "compression", {"none", "lzw", "zip", "packbits"}, 0, 0, "compression"},
        {"TIFF", "bitdepth", {"8", "16", "32"}},
        {"DPX", "bitdepth", {"8", "10", "12", "16"}},
        {"PNG", "bitdepth", {"8", "16"}},
        {"PNG", "level", {}, 0, 9, "png:compressionLevel"},
        {"JPEG", "quality", {}, 1, 100, "Compression", "jpeg:"},
        {"SGI", "bitdepth", {"8", "16"}},
    };
    return table;
}

OptionSpec const* findSpec(std::string const& format, std::string const& key) {
    for (OptionSpec const& spec : specs())
        if (format == spec.format && key == spec.key)
            return &spec;
    return nullptr;
}

bool parseInt(std::string const& text, int& value) {
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

bool accepts(OptionSpec const& spec, std::string const& value) {
    if (!spec.words.empty())
        return std::find(spec.words.begin(), spec.words.end(), value) != spec.words.end();
    int number = 0;
    return parseInt(value, number) && number >= spec.low && number <= spec.high;
}

std::string describeValues(OptionSpec const& spec) {
    return spec.words.empty() ? fmt::format("{}-{}", spec.low, spec.high)
                              : fmt::format("{}", fmt::join(spec.words, "|"));
}

} // namespace

FfFileFormatOptions::FfFileFormatOptions(std::string formatName, std::string const& text)
    : _formatName(std::move(formatName)) {
    setText(text);
}

void FfFileFormatOptions::setText(std::string const& text) {
    std::map<std::string, std::string> values;
    std::size_t position = 0;
    auto const isSeparator = [](char c) {
        return c == ' ' || c == '\t' || c == '\n' || c == ',' || c == ';';
    };
    while (position < text.size()) {
        while (position < text.size() && isSeparator(text[position]))
            ++position;
        std::size_t end = position;
        while (end < text.size() && !isSeparator(text[end]))
            ++end;
        if (end == position)
            break;
        std::string const pair = text.substr(position, end - position);
        position = end;
        std::size_t const equals = pair.find('=');
        std::string const key = pair.substr(0, equals);
        std::string const value = equals == std::string::npos ? std::string() : pair.substr(equals + 1);
        OptionSpec const* spec = findSpec(_formatName, key);
        if (!spec)
            throw FfIOEx::ExBadOptions(__FILE__, __LINE__, _formatName,
                                       fmt::format("no option \"{}\" (options: \"{}\")", key, text));
        if (!accepts(*spec, value))
            throw FfIOEx::ExBadOptions(
                __FILE__, __LINE__, _formatName,
                fmt::format("\"{}\" is not a value of {} ({})", value, key, describeValues(*spec)));
        values[key] = value;
    }
    _values = std::move(values);
}

std::string FfFileFormatOptions::getText() const {
    std::string text;
    for (auto const& [key, value] : _values)
        text += (text.empty() ? "" : " ") + key + "=" + value;
    return text;
}

std::optional<std::string> FfFileFormatOptions::getValue(std::string const& key) const {
    auto const found = _values.find(key);
    return found == _values.end() ? std::nullopt : std::optional<std::string>(found->second);
}

std::optional<int> FfFileFormatOptions::getBitDepth() const {
    int bits = 0;
    if (auto const value = getValue("bitdepth"); value && parseInt(*value, bits))
        return bits;
    return std::nullopt;
}

std::vector<FfFileFormatOptions::Attribute> FfFileFormatOptions::getAttributes() const {
    std::vector<Attribute> attributes;
    for (auto const& [key, value] : _values) {
        OptionSpec const* spec = findSpec(_formatName, key);
        if (spec && spec->attribute)
            attributes.push_back(
                {spec->attribute, spec->valuePrefix + value, spec->words.empty() && !*spec->valuePrefix});
    }
    return attributes;
}

std::vector<std::pair<std::string, std::string>>
FfFileFormatOptions::describe(std::string const& formatName) {
    std::vector<std::pair<std::string, std::string>> keys;
    for (OptionSpec const& spec : specs())
        if (formatName == spec.format)
            keys.emplace_back(spec.key, describeValues(spec));
    return keys;
}

} // namespace Qv
