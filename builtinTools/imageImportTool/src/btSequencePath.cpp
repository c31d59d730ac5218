#include "btSequencePath.h"

#include "assertions.h"
#include "liStringUtil.h"
#include "osFilePath.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace Qv {

namespace {
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string joinPath(std::string const& directory, std::string const& name) {
    OsFilePath path(directory);
    path += OsFilePath(name);
    return path.toString();
}
} // namespace

BtSequencePath::~BtSequencePath() = default;

OPtrRet<BtSequencePath> BtSequencePath::create() {
    return OPtrRet<BtSequencePath>(new BtSequencePath());
}

OPtrRet<BtSequencePath> BtSequencePath::create(std::string const& path) {
    OPtrRet<BtSequencePath> whole(new BtSequencePath());
    whole->init(path);
    return whole;
}

OPtrRet<BtSequencePath> BtSequencePath::create(std::string const& path, int in, int out) {
    OPtrRet<BtSequencePath> whole(new BtSequencePath());
    whole->init(path);
    int const lastIndex = whole->_nbFiles - 1;
    in = std::max(in, 0);
    out = std::min(out, lastIndex);
    QV_ASSERT(in <= lastIndex);
    QV_ASSERT(out <= lastIndex);
    QV_ASSERT(in <= out);
    if ((in == 0 && out == lastIndex) || whole->_nbFiles == 1)
        return whole;
    OPtrRet<BtSequencePath> part(new BtSequencePath());
    for (int i = in; i <= out; ++i)
        part->addFileName(whole->getFileNameAt(i));
    part->_scheme = whole->_scheme;
    return part;
}

OPtrRet<BtSequencePath> BtSequencePath::createFromFilePath(std::string const& filePath) {
    OPtrRet<BtSequencePath> path(new BtSequencePath());
    path->init(toSequencePathNotation(filePath));
    return path;
}

BtSequencePath::Components BtSequencePath::getPathComponentsFromSpec(std::string const& spec) {
    Components parts;
    OsFilePath path(spec);
    parts.directory = path.getDirectoryName();
    extractScheme(parts.directory, parts.scheme);
    std::string const base = path.getBaseName(true);
    // The innermost of the first bracket pair: a further '[' restarts the
    // search, the first ']' ends it; an unmatched '[' is no bracket.
    std::size_t open = base.find('[');
    std::size_t close = std::string::npos;
    for (std::size_t i = open == std::string::npos ? base.size() : open + 1; i < base.size(); ++i) {
        if (base[i] == '[') {
            open = i;
        } else if (base[i] == ']') {
            close = i;
            break;
        }
    }
    if (close == std::string::npos) {
        parts.prefix = base;
        return parts;
    }
    parts.hasBracket = true;
    parts.prefix = base.substr(0, open);
    parts.range = base.substr(open + 1, close - open - 1);
    parts.suffix = base.substr(close + 1);
    return parts;
}

void BtSequencePath::init(std::string const& path) {
    Components parts = getPathComponentsFromSpec(path);
    _scheme = std::move(parts.scheme);
    _directory = std::move(parts.directory);
    _prefix = std::move(parts.prefix);
    _suffix = std::move(parts.suffix);
    _fileNamePattern = parts.hasBracket ? _prefix + getPatternRangeMarker() + _suffix : _prefix;
    if (!parts.range.empty()) {
        _rangeSpec = std::make_unique<BtRangeSpec>(parts.range);
        _nbFiles = _rangeSpec->getNbItems();
    } else {
        _rangeSpec.reset();
        _nbFiles = 1;
    }
    std::string name = _prefix + _suffix;
    std::size_t dot = name.rfind('.');
    if (dot != std::string::npos)
        name.erase(dot);
    _sequenceName = LiStringUtil::sanitizeComponentName(name, LiStringUtil::getReplacementChar());
    if (_sequenceName.empty())
        _sequenceName = "Unnamed_sequence";
}

bool BtSequencePath::addFileName(std::string const& filePath) {
    std::string const notation = toSequencePathNotation(filePath);
    if (_nbFiles == 0) {
        init(notation);
        return true;
    }
    if (!_rangeSpec)
        return false;
    Components parts = getPathComponentsFromSpec(notation);
    if (parts.range.empty() || parts.directory != _directory || parts.prefix != _prefix ||
        parts.suffix != _suffix)
        return false;
    int const padding =
        parts.range.size() >= 2 && parts.range[0] == '0' ? static_cast<int>(parts.range.size()) : 0;
    if (!_rangeSpec->addItem(parts.range, padding))
        return false;
    ++_nbFiles;
    return true;
}

std::string BtSequencePath::getPath(IncludeScheme includeScheme) const {
    std::string name = _prefix;
    if (_rangeSpec)
        name += "[" + _rangeSpec->getSpec() + "]";
    name += _suffix;
    std::string path = joinPath(_directory, name);
    if (includeScheme == INCLUDE_SCHEME && !_scheme.empty())
        path = _scheme + ":" + path;
    return path;
}

std::string BtSequencePath::getPattern() const {
    return joinPath(_directory, _fileNamePattern);
}

void BtSequencePath::setDirectory(std::string const& directory) {
    _directory = OsFilePath(directory).toString();
}

int BtSequencePath::getStartFileNo() const {
    return _rangeSpec ? btFrameValue(_rangeSpec->getValueAt(0)) : 1;
}

std::string BtSequencePath::getFileNameAt(int index) const {
    std::string frame = _rangeSpec ? _rangeSpec->getValueAt(index) : std::string();
    return joinPath(_directory, _prefix + frame + _suffix);
}

void BtSequencePath::setRange(int first, int count, int padding) {
    if (!_rangeSpec)
        return;
    long long last = static_cast<long long>(first) + count - 1;
    _rangeSpec = std::make_unique<BtRangeSpec>(
        first, static_cast<int>(std::clamp<long long>(last, INT_MIN, INT_MAX)), padding);
    _nbFiles = _rangeSpec->getNbItems();
}

bool BtSequencePath::extractScheme(std::string& path, std::string& scheme) {
    if (path.empty() || (path.size() > 1 && path[1] == ':'))
        return false;
    std::size_t const colon = path.find(':');
    if (colon == std::string::npos || colon > path.find('/'))
        return false;
    scheme = path.substr(0, colon);
    path.erase(0, colon + 1);
    return true;
}

std::string BtSequencePath::toSequencePathNotation(std::string const& filePath) {
    std::size_t const dot = filePath.rfind('.');
    if (dot == std::string::npos || dot == 0 || !isDigit(filePath[dot - 1]))
        return filePath;
    std::size_t start = dot - 1;
    while (start > 0 && isDigit(filePath[start - 1]))
        --start;
    return filePath.substr(0, start) + "[" + filePath.substr(start, dot - start) + "]" + filePath.substr(dot);
}

} // namespace Qv
