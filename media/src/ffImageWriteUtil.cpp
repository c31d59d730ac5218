#include "ffImageWriteUtil.h"

#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "imLayout.h"
#include "ixUtil.h"

#include <algorithm>

namespace Qv {

void FfImageWriteUtil::writeImage(OsFilePath const& path, ImImageConst const& image,
                                  std::string const& options) {
    if (image.isNull() || image.getRect().isEmpty())
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, path.toString(), "an empty image has no file");
    PiImageFilePtr const file = FfFileFormatMgr::getInstance().createImageFile(path);
    if (!options.empty())
        file->setFormatOptions(options);
    GeRectangle<int> const& rect = image.getRect();
    file->setSize(rect.getWidth(), rect.getHeight());
    file->setFormat(image.getFormat());
    int const rows = std::max(1, file->getPreferredBlockSize().y);
    // The file's rows start at 0: each block is a view of the image's rows, moved there.
    ImLayout const& layout = image.getLayout();
    for (int y = 0; y < rect.getHeight(); y += rows) {
        int const height = std::min(rows, rect.getHeight() - y);
        ImLayout const block({0, rect.getWidth(), y, y + height}, layout.getFormat(), layout.getRowBytes());
        std::size_t const offset = static_cast<std::size_t>(y) * layout.getRowBytes();
        file->writeBlock(ImImageConst(block, image.getMemory(), image.getOffset() + offset));
    }
    file->close();
}

void FfImageWriteUtil::writeTile(OsFilePath const& path, IxTile const& tile, std::string const& options) {
    writeImage(path, IxUtil::ixTileToImImageConst(tile), options);
}

} // namespace Qv
