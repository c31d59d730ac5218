#include "msgCatalogue.h"

#include "msgEx.h"

#include <fmt/format.h>
#include <fstream>

namespace Qv {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trim(std::string_view text) {
    auto const first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    auto const last = text.find_last_not_of(kBlanks);
    return text.substr(first, last - first + 1);
}

bool isIdChar(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

[[noreturn]] void throwMalformed(std::string const& source, int line, std::string_view what) {
    throw MsgEx::ExMalformedCatalogue(__FILE__, __LINE__,
                                      fmt::format("Message catalogue {}, line {}: {}", source, line, what));
}

} // namespace

MsgCatalogue MsgCatalogue::load(std::filesystem::path const& path) {
    std::ifstream in(path);
    if (!in)
        throw MsgEx::ExCatalogueNotFound(__FILE__, __LINE__,
                                         fmt::format("Cannot open message catalogue {}", path.string()));
    return parse(in, path.string());
}

MsgCatalogue MsgCatalogue::parse(std::istream& in, std::string sourceName) {
    MsgCatalogue catalogue(std::move(sourceName));
    std::map<std::string, int, std::less<>> lineOfId;
    std::string raw;
    int lineNo = 0;
    while (std::getline(in, raw)) {
        ++lineNo;
        std::string_view const line = trim(raw);
        if (line.empty() || line.front() == '#')
            continue;
        auto const equals = line.find('=');
        if (equals == std::string_view::npos)
            throwMalformed(catalogue._name, lineNo, "expected `ID = text`, found no '='");
        std::string_view const id = trim(line.substr(0, equals));
        if (id.empty())
            throwMalformed(catalogue._name, lineNo, "the message id before '=' is missing");
        for (char c : id)
            if (!isIdChar(c))
                throwMalformed(
                    catalogue._name, lineNo,
                    fmt::format("the message id \"{}\" may hold only letters, digits and '_'", id));
        std::string_view const text = trim(line.substr(equals + 1));
        if (text.empty())
            throwMalformed(catalogue._name, lineNo, fmt::format("the message {} has no text", id));
        auto const [previous, isNew] = lineOfId.emplace(std::string(id), lineNo);
        if (!isNew)
            throwMalformed(catalogue._name, lineNo,
                           fmt::format("the message {} is already defined on line {}", id, previous->second));
        catalogue._entries.emplace(std::string(id), std::string(text));
    }
    if (in.bad())
        throw MsgEx::ExCatalogueNotFound(__FILE__, __LINE__,
                                         fmt::format("Cannot read message catalogue {}", catalogue._name));
    return catalogue;
}

std::string const* MsgCatalogue::find(std::string_view id) const {
    auto const it = _entries.find(id);
    return it == _entries.end() ? nullptr : &it->second;
}

} // namespace Qv
