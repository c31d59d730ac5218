// qv sequence: the image sequence that a reader would play from a path or
// from a stored fragment: its kind, path, name and size, its first image, the
// fragment a composition keeps, or the file at an index.
#include "btImageSequenceEntry.h"
#include "exBase.h"
#include "imMemoryBuffer.h"
#include "piImageFileDetails.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

namespace Qv {

namespace {

struct SequenceOptions {
    std::string path;
    std::string load;
    bool xml = false;
    std::optional<int> fileAt;
};

int fail(std::string const& what, std::string const& reason) {
    // Reasons of the file layer begin with the file's name: not twice.
    if (reason.rfind(what + ": ", 0) == 0)
        std::cerr << "qv: " << reason << std::endl;
    else
        std::cerr << "qv: " << what << ": " << reason << std::endl;
    return 1;
}

std::string readText(std::string const& name) {
    std::ifstream in(name, std::ios::binary);
    if (!in)
        throw ExBase(__FILE__, __LINE__, "cannot be read");
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void describe(PiImageSequence const& sequence, std::ostream& out) {
    out << "kind: " << (sequence.isStream() ? "StreamSequence" : "ImageSequence") << '\n'
        << "path: " << sequence.getPath() << '\n'
        << "name: " << sequence.getSequenceName() << '\n'
        << "images: " << sequence.getNbImages() << '\n';
    // Opened last: a missing first file still leaves what the path says.
    out.flush();
    PiImageFilePtr const first = sequence.getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
    out << "first: " << PiImageFileDetails::getDetailString(*first) << '\n';
}

int runSequence(SequenceOptions const& options, std::ostream& out) {
    // What an error names: the fragment file, or the path as the user wrote it.
    std::string const what = options.load.empty() ? options.path : options.load;
    RCStrongPtr<PiImageSequence> sequence;
    try {
        if (!options.load.empty()) {
            sequence = PiImageSequence::createFromFragment(readText(options.load));
            if (sequence.isNull())
                return fail(what, "no image sequence");
        } else {
            findEntryPoint<BtCreateImageSequenceFunction>(BT_CREATE_IMAGE_SEQUENCE_SYMBOL)(options.path,
                                                                                           sequence);
            if (sequence.isNull())
                return fail(what, "no files match the path");
        }
        if (options.xml) {
            std::ostringstream fragment;
            sequence->write(fragment);
            out << fragment.str();
            if (fragment.str().empty() || fragment.str().back() != '\n')
                out << '\n';
        } else if (options.fileAt) {
            out << sequence->getFileNameAt(*options.fileAt) << '\n';
        } else {
            describe(*sequence, out);
        }
    } catch (ExBase const& error) {
        out.flush();
        return fail(what, error.getReason());
    }
    return 0;
}

} // namespace

void addSequenceCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<SequenceOptions>();
    CLI::App* command = app.add_subcommand(
        "sequence", "Make the image sequence of a path (files or a movie) or of a stored fragment, and print "
                    "its kind, path, name, number of images and first image, one key: value a line");
    CLI::Option* path = command->add_option("PATH", options->path, "A sequence path or a movie");
    CLI::Option* load =
        command->add_option("--load", options->load, "Read the sequence from an XML fragment file instead")
            ->excludes(path);
    path->excludes(load);
    CLI::Option* xml =
        command->add_flag("--xml", options->xml, "Print the fragment a composition keeps instead");
    command->add_option("--file-at", options->fileAt, "Print the file name at index I instead")
        ->option_text("I")
        ->check(CLI::NonNegativeNumber)
        ->excludes(xml);
    command->callback([&action, options, path, load] {
        if (path->count() == 0 && load->count() == 0)
            throw CLI::RequiredError("PATH or --load");
        action = [options](std::ostream& out) { return runSequence(*options, out); };
    });
}

} // namespace Qv
