// qv resolve: a sequence path resolved against the disk, as the tools would
// store it, with its files or its parts on request.
#include "btSequencePathReport.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"

#include <iostream>
#include <memory>

namespace Qv {

namespace {

struct ResolveOptions {
    std::string path;
    bool files = false;
    bool info = false;
};

int resolve(ResolveOptions const& options, std::ostream& out) {
    BtSequencePathReport report;
    try {
        findEntryPoint<BtReportSequencePathFunction>(BT_REPORT_SEQUENCE_PATH_SYMBOL)(options.path,
                                                                                     options.files, report);
    } catch (std::exception const& error) {
        std::cerr << "error: " << error.what() << '\n';
        return 1;
    }
    if (options.info) {
        out << "scheme: " << report.scheme << '\n'
            << "directory: " << report.directory << '\n'
            << "sequenceName: " << report.sequenceName << '\n'
            << "pattern: " << report.pattern << '\n'
            << "fileNamePattern: " << report.fileNamePattern << '\n'
            << "nbFiles: " << report.nbFiles << '\n'
            << "startFileNo: " << report.startFileNo << '\n';
    } else if (options.files) {
        for (std::string const& name : report.fileNames)
            out << name << '\n';
    } else {
        out << report.resolved << '\n';
    }
    return 0;
}

} // namespace

void addResolveCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<ResolveOptions>();
    CLI::App* command = app.add_subcommand(
        "resolve",
        "Resolve a sequence path such as 'shots/p.[#].exr' against the disk and print its canonical "
        "form (an empty line when nothing matches)");
    command->add_option("PATH", options->path, "The sequence path")->required();
    CLI::Option* files =
        command->add_flag("--files", options->files, "Print every file name, in index order");
    command
        ->add_flag("--info", options->info,
                   "Print scheme, directory, sequenceName, pattern, fileNamePattern, nbFiles and startFileNo")
        ->excludes(files);
    command->callback(
        [&action, options] { action = [options](std::ostream& out) { return resolve(*options, out); }; });
}

} // namespace Qv
