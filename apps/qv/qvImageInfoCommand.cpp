// qv imageinfo: what the file layer sees of image files.
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "qvCommands.h"

#include <iostream>
#include <memory>
#include <vector>

namespace Qv {

namespace {

void printInfo(std::string const& name, std::ostream& out) {
    PiImageFilePtr const file = FfFileFormatMgr::getInstance().openImageFile(OsFilePath(name));
    ImLayout const layout = file->getFileLayout();
    GeVector2<int> const block = file->getPreferredBlockSize();
    out << "file: " << name << '\n'
        << "format: " << file->getFormatName() << '\n'
        << "size: " << layout.getWidth() << 'x' << layout.getHeight() << '\n'
        << "channels: " << file->getNbFileChannels() << '\n'
        << "depth: " << layout.getFormat().getPixelFormat().dump() << '\n'
        << "block: " << block.x << 'x' << block.y << '\n';
}

} // namespace

void addImageInfoCommand(CLI::App& app, QvAction& action) {
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand(
        "imageinfo",
        "Print the format, size, channels, depth and block size of image files, one key: value a line");
    command->add_option("FILE", *files, "Image files")->required();
    command->callback([&action, files] {
        action = [files](std::ostream& out) {
            int status = 0;
            for (std::string const& name : *files) {
                try {
                    printInfo(name, out);
                } catch (FfIOEx const& error) {
                    out.flush();
                    std::cerr << "qv: imageinfo: " << error.getReason() << std::endl;
                    status = 1;
                }
            }
            return status;
        };
    });
}

} // namespace Qv
