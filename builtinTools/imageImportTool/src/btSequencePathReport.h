#pragma once
// What the host's command line shows of a sequence path. The host loads the
// tool library at run time and links none of it, so it finds the one entry
// point by its C name, BT_REPORT_SEQUENCE_PATH_SYMBOL.
#include <string>
#include <vector>

namespace Qv {

struct BtSequencePathReport {
    // The canonical path; "" when a wildcard selected no file, and then
    // nothing else is filled.
    std::string resolved;
    std::string scheme;
    std::string directory;
    std::string sequenceName;
    std::string pattern;
    std::string fileNamePattern;
    int nbFiles = 0;
    int startFileNo = 0;
    // In index order, when asked for.
    std::vector<std::string> fileNames;
};

// Resolves text and describes the result; throws what the resolution throws.
using BtReportSequencePathFunction = void (*)(std::string const& text, bool withFileNames,
                                              BtSequencePathReport& report);
inline constexpr char const* BT_REPORT_SEQUENCE_PATH_SYMBOL = "btReportSequencePath";

} // namespace Qv

extern "C" void btReportSequencePath(std::string const& text, bool withFileNames,
                                     Qv::BtSequencePathReport& report);
