#include "btSequencePathReport.h"

#include "btSequencePath.h"
#include "btSequencePathParser.h"

#include <algorithm>
#include <type_traits>

extern "C" __attribute__((visibility("default"))) void
btReportSequencePath(std::string const& text, bool withFileNames, Qv::BtSequencePathReport& report) {
    using namespace Qv;
    report = BtSequencePathReport();
    report.resolved = BtSequencePathParser::resolveSequencePath(text);
    if (report.resolved.empty())
        return;
    OPtrRet<BtSequencePath> path = BtSequencePath::create(report.resolved);
    report.scheme = path->getScheme();
    report.directory = path->getDirectory();
    report.sequenceName = path->getSequenceName();
    report.pattern = path->getPattern();
    report.fileNamePattern = path->getFileNamePattern();
    report.nbFiles = path->getNbFiles();
    report.startFileNo = path->getStartFileNo();
    if (withFileNames) {
        report.fileNames.reserve(static_cast<std::size_t>(std::max(0, report.nbFiles)));
        for (int i = 0; i < report.nbFiles; ++i)
            report.fileNames.push_back(path->getFileNameAt(i));
    }
}

// The function's type is part of the contract with the host.
static_assert(std::is_same_v<decltype(&btReportSequencePath), Qv::BtReportSequencePathFunction>);
