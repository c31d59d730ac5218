#include "piImageFileDetails.h"

#include "assertions.h"

#include <fmt/format.h>

namespace Qv {

std::string PiImageFileDetails::getDetailString(PiImageFile const& file) {
    QV_ASSERT(!file.isForWriting());
    ImLayout const layout = file.getFileLayout();
    int const channels = file.getNbFileChannels();
    std::string text =
        fmt::format("{}, {} x {}, {} channel{} ({}), {}", file.getFormatName(), layout.getWidth(),
                    layout.getHeight(), channels, channels == 1 ? "" : "s",
                    fmt::join(file.getChannelNames(), " "), layout.getFormat().getPixelFormat().dump());
    for (auto const& [name, value] : file.getAttributes())
        if (name == "compression")
            text += ", compression " + value;
    return text;
}

} // namespace Qv
