// qv: loads the tool library, initialises its packages, runs one subcommand,
// finalises. Any failure is one line on standard error and a non-zero status.
#include "assertions.h"
#include "inInitMgr.h"
#include "msgServer.h"
#include "qvCommands.h"
#include "qvPluginLoader.h"

#include <iostream>

using namespace Qv;

namespace {

int fail(std::string const& text) {
    std::cerr << "qv: " << text << '\n';
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("qv: renders and inspects compositions with the standard tool package");
    app.require_subcommand(1);
    QvAction action;
    addVersionCommand(app, action);
    addPackagesCommand(app, action);
    addResolveCommand(app, action);
    addExprCommand(app, action);
    addEditCommands(app, action);
    addRenameCommand(app, action);
    addToolsCommand(app, action);
    addInfoCommand(app, action);
    addEvalCommand(app, action);
    addImageInfoCommand(app, action);
    addSnapshotCommand(app, action);
    addPixelCommand(app, action);
    addSequenceCommand(app, action);
    addReadCommand(app, action);
    addMotioCommand(app, action);
    addReaderCommand(app, action);
    addImportCommands(app, action);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        // --help is a success; any other parse failure is a usage error, with
        // the status that shell scripts and farm managers expect for one.
        return app.exit(error) == 0 ? 0 : 2;
    }

    // Messages of the tools reach the user on standard error, beside qv's own.
    MsgServer::getInstance().setSink([](MsgSeverity severity, std::string const& text) {
        std::cerr << "qv: " << toString(severity) << ": " << text << std::endl;
    });
    try {
        QvPluginLoader::load();
        InInitMgr& manager = InInitMgr::getInstance();
        manager.initializeAll();
        int status = action(std::cout);
        std::cout.flush();
        manager.finalizeAll();
        return status;
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        return fail("assertion failed: " + error.getReason() + " (" + error.getFile() + ":" +
                    std::to_string(error.getLine()) + ")");
    } catch (ExBase const& error) {
        return fail(error.getReason());
    } catch (std::exception const& error) {
        return fail(error.what());
    }
}
