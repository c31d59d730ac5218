// Channel names a writer is given: what the file's header says, read back
// by the image library itself, and the values under them.
#include "ffIOEx.h"
#include "ffImageFormatTraits.h"
#include "ffImageWriter.h"
#include "imMemoryBuffer.h"
#include "imWriteGuard.h"
#include "mediaTestUtil.h"

#include <OpenImageIO/imageio.h>

namespace Qv {
namespace {

class ImageWriterChannelNames : public MediaTest::FileTest {};

struct NamesCase {
    char const* what;
    int comps;
    std::vector<std::string> given;
    std::vector<std::string> stored;
    int alphaChannel;
};

TEST_F(ImageWriterChannelNames, theHeaderHoldsTheNamesGivenWhenTheyFitTheComponents) {
    std::vector<NamesCase> const cases{
        {"two vector components", 2, {"R", "G"}, {"R", "G"}, -1},
        {"none given: grey and alpha", 2, {}, {"Y", "A"}, 1},
        {"too few for the components: the defaults", 3, {"R", "G"}, {"R", "G", "B"}, -1},
    };
    for (NamesCase const& c : cases) {
        OsFilePath const file = path("names.exr");
        FfImageWriter writer(file, FfImageFormatTraits::find("openexr"));
        writer.setSize(3, 2);
        writer.setChannelNames(c.given);
        ImImage const image(ImLayout({0, 3, 0, 2}, ImFormat(c.comps, ImPixelFormat::HDR)),
                            ImMemoryBuffer::Factory::getInstance());
        {
            ImWriteGuard const guard(image);
            for (int y = 0; y < 2; ++y)
                for (int i = 0; i < 3 * c.comps; ++i)
                    guard.getLineAs<float>(y)[i] = static_cast<float>(10 * y + i) - 2.5f;
        }
        writer.writeBlock(image);
        writer.close();

        auto input = OIIO::ImageInput::open(file.toString());
        ASSERT_TRUE(input) << c.what;
        OIIO::ImageSpec const& spec = input->spec();
        EXPECT_EQ(spec.channelnames, c.stored) << c.what;
        EXPECT_EQ(spec.alpha_channel, c.alphaChannel) << c.what;
        EXPECT_EQ(spec.format, OIIO::TypeDesc::FLOAT) << c.what;
        // EXR keeps channels sorted by name; read each by its own, the values
        // are those written under it, negative ones too.
        std::vector<float> pixels(static_cast<std::size_t>(3 * 2 * c.comps));
        ASSERT_TRUE(input->read_image(0, 0, 0, c.comps, OIIO::TypeDesc::FLOAT, pixels.data())) << c.what;
        for (int k = 0; k < c.comps; ++k) {
            int const stored = spec.channelindex(c.stored[static_cast<std::size_t>(k)]);
            ASSERT_GE(stored, 0) << c.what;
            EXPECT_EQ(pixels[static_cast<std::size_t>((1 * 3 + 2) * c.comps + stored)],
                      static_cast<float>(10 + 2 * c.comps + k) - 2.5f)
                << c.what << " component " << k;
        }
        input->close();
    }
}

TEST_F(ImageWriterChannelNames, namesAfterTheFirstBlockAreRefused) {
    FfImageWriter writer(path("late.exr"), FfImageFormatTraits::find("openexr"));
    writer.setSize(1, 2);
    ImImage const row(ImLayout({0, 1, 0, 1}, ImFormat(2, ImPixelFormat::HDR)),
                      ImMemoryBuffer::Factory::getInstance());
    writer.writeBlock(row);
    EXPECT_THROW(writer.setChannelNames({"R", "G"}), FfIOEx::ExOpNotSupported);
}

} // namespace
} // namespace Qv
