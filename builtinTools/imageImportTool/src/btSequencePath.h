#pragma once
// A parsed sequence path, "[scheme:]directory/prefix[range]suffix", with the
// arithmetic from an index of the sequence to a file name. The range is taken
// as written: wildcards are resolved before, by BtSequencePathParser.
//
// The scheme is the text before the first ':' of the directory's first
// component ("cache:shots/a.[1:3].dpx"), unless that ':' follows a drive letter.
// Patterns and file names never carry it; getPath does on request.
#include "btRangeSpec.h"
#include "exBase.h"

#include <string>

namespace Qv {

class BtSequencePath {
public:
    enum IncludeScheme { EXCLUDE_SCHEME = 0, INCLUDE_SCHEME = 1 };

    // An empty path, with no file: addFileName gives it its first.
    static OPtrRet<BtSequencePath> create();
    // The whole path, whatever its number of files.
    static OPtrRet<BtSequencePath> create(std::string const& path);
    // The files from index in through out of the path (in clamped up to 0, out
    // down to the last index); bounds out of the sequence fail an assertion. A
    // part of the sequence is rebuilt file by file, keeping steps and padding.
    static OPtrRet<BtSequencePath> create(std::string const& path, int in, int out);
    // One file as a one-frame sequence: "a.0012.dpx" is read as "a.[0012].dpx".
    static OPtrRet<BtSequencePath> createFromFilePath(std::string const& filePath);

    virtual ~BtSequencePath();
    BtSequencePath(BtSequencePath const&) = delete;
    BtSequencePath& operator=(BtSequencePath const&) = delete;

    // Adds one file of the same directory, prefix and suffix, in frame order.
    bool addFileName(std::string const& filePath);

    std::string getPath(IncludeScheme includeScheme = INCLUDE_SCHEME) const;
    // Directory and file name pattern, the range written getPatternRangeMarker().
    std::string getPattern() const;
    std::string const& getFileNamePattern() const { return _fileNamePattern; }
    std::string const& getDirectory() const { return _directory; }
    void setDirectory(std::string const& directory);
    std::string const& getScheme() const { return _scheme; }
    // prefix + suffix without the extension, usable as a component name;
    // "Unnamed_sequence" when nothing of it is left.
    std::string const& getSequenceName() const { return _sequenceName; }
    // The frame number of index 0; 1 without a range.
    int getStartFileNo() const;
    int getNbFiles() const { return _nbFiles; }
    // Directory, prefix, the frame text of the index and suffix.
    std::string getFileNameAt(int index) const;
    BtRangeSpec const* getRangeSpec() const { return _rangeSpec.get(); }
    // Replaces the range, when there is one, by first .. first + count - 1.
    void setRange(int first, int count, int padding);

    // Cuts "scheme:" off the path; false when it has none.
    static bool extractScheme(std::string& path, std::string& scheme);
    // "a/p.0012.dpx" -> "a/p.[0012].dpx": the digits before the last dot become
    // the range. Texts without digits there are returned as they are.
    static std::string toSequencePathNotation(std::string const& filePath);
    static char const* getPatternRangeMarker() { return "[#]"; }

private:
    struct Components {
        std::string scheme;
        std::string directory;
        std::string prefix;
        std::string range;
        std::string suffix;
        bool hasBracket = false;
    };
    static Components getPathComponentsFromSpec(std::string const& spec);

    BtSequencePath() = default;
    void init(std::string const& path);

    std::string _scheme;
    OPtr<BtRangeSpec> _rangeSpec;
    std::string _directory;
    std::string _prefix;
    std::string _suffix;
    std::string _sequenceName;
    std::string _fileNamePattern;
    int _nbFiles = 0;
};

} // namespace Qv
