// Vectors computed once by the Motio chain, written to files as `qv motio`
// writes them and read back through "Image Reader" nodes whose "Motion Vector
// Status" says so: the readers' "Output Image" is the same vectors in pixels,
// and a neighbouring frame warped along them is the one warped along the
// computed vectors, so nothing needs computing again.
#include "../../../base/test/baseTestHelpers.h"
#include "btImageReaderController.h"
#include "btMotioTool.h"
#include "btMotionControllerBase.h"
#include "btPxMotioNode.h"
#include "btPxMotioOutputNode.h"
#include "ffImageFormatTraits.h"
#include "ffImageWriteUtil.h"
#include "ffImageWriter.h"
#include "imMemoryBuffer.h"
#include "imWriteGuard.h"
#include "motioTestSupport.h"
#include "motioTexturePair.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <sstream>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

constexpr int WIDTH = 128;
constexpr int HEIGHT = 96;
GeRectangle<int> const FILE_RECT{0, WIDTH, 0, HEIGHT};
// How far the texture moves from one frame to the next.
constexpr double STEP_X = 2.5;
constexpr double STEP_Y = -1.25;
constexpr int NB_FRAMES = 3;
// The pixels a stored 0 or 1 stands for in the normalised files: more than
// any vector found here.
constexpr float MAX_DISPLACEMENT = 8.0f;

constexpr auto FORWARD = BtMotioTypes::FORWARD_VECTORS;
constexpr auto BACKWARD = BtMotioTypes::BACKWARD_VECTORS;

// The frames whose vectors of a type exist: forward ones of every frame but
// the last, backward ones of every frame but the first, as `qv motio` writes.
int firstFrameOf(BtMotioTypes::VectorType type) {
    return type == FORWARD ? 0 : 1;
}
char const* nameOf(BtMotioTypes::VectorType type) {
    return type == FORWARD ? "fwd" : "bwd";
}

// Frame f of the plate: the texture moved by f steps. Pairs of the same seed
// share their frame 0, so frame 1 of the pair moving by f steps is frame f.
TextureImage plateFrame(int frame) {
    TexturePair const pair(WIDTH, HEIGHT, {frame * STEP_X, frame * STEP_Y, 0.0, 1.0}, CAMERA_STD);
    return pair.render(frame == 0 ? 0 : 1);
}

// A vector in pixels as a vector image holds it: blue 0, alpha 1.
Rgba asVector(Rgba const& v) {
    return {v.r, v.g, 0.0f, 1.0f};
}

// A stored component of a normalised file: 0 for -max, 1 for +max.
float normalized(float v) {
    return (v / MAX_DISPLACEMENT + 1.0f) / 2.0f;
}

// A vector image in pixels to a 32-bit float RGBA EXR: red and green the
// vectors (the Motio chain's own tiles are halves), blue 0, alpha 1.
void writeVectorsExr(OsFilePath const& path, IxTile const& vectors) {
    IxReadGuard const in(vectors);
    FfImageWriteUtil::writeTile(path, makeTile(RGBA32, vectors.getPixelRegion(), [&](int x, int y) {
                                    return asVector(IxPixelUtil::getPixelColor(in, x, y));
                                }));
}

// R and G of a vector image, in pixels, to a file as `qv motio` writes them:
// two 32-bit float components named "R" and "G".
void writeTwoChannelExr(OsFilePath const& path, IxTile const& vectors) {
    ImImage const image(ImLayout(FILE_RECT, ImFormat(2, ImPixelFormat::HDR)),
                        ImMemoryBuffer::Factory::getInstance());
    {
        IxReadGuard const in(vectors);
        ImWriteGuard const out(image);
        GeRectangle<int> const& r = vectors.getPixelRegion();
        for (int y = 0; y < HEIGHT; ++y) {
            float* row = out.getLineAs<float>(y);
            for (int x = 0; x < WIDTH; ++x) {
                Rgba const v = IxPixelUtil::getPixelColor(in, r.x1 + x, r.y1 + y);
                row[2 * x] = v.r;
                row[2 * x + 1] = v.g;
            }
        }
    }
    FfImageWriter writer(path, FfImageFormatTraits::find("openexr"));
    writer.setSize(WIDTH, HEIGHT);
    writer.setFormat(image.getFormat());
    writer.setChannelNames({"R", "G"});
    writer.writeBlock(image);
    writer.close();
}

// Normalised vectors in a 16-bit PNG: each component rounded to the nearest
// of 65536 steps, blue at "no motion".
void writeNormalizedPng(OsFilePath const& path, IxTile const& vectors) {
    ImImage const image(ImLayout(FILE_RECT, ImFormat(3, ImPixelFormat::UINT16)),
                        ImMemoryBuffer::Factory::getInstance());
    auto const stored = [](float s) {
        return std::uint16_t(std::lround(std::clamp(s, 0.0f, 1.0f) * 65535.0f));
    };
    {
        IxReadGuard const in(vectors);
        ImWriteGuard const out(image);
        GeRectangle<int> const& r = vectors.getPixelRegion();
        for (int y = 0; y < HEIGHT; ++y) {
            std::uint16_t* row = out.getLineAs<std::uint16_t>(y);
            for (int x = 0; x < WIDTH; ++x) {
                Rgba const v = IxPixelUtil::getPixelColor(in, r.x1 + x, r.y1 + y);
                row[3 * x] = stored(normalized(v.r));
                row[3 * x + 1] = stored(normalized(v.g));
                row[3 * x + 2] = stored(0.5f);
            }
        }
    }
    FfImageWriteUtil::writeImage(path, image);
}

// Normalised vectors in a half-float EXR.
void writeNormalizedHalfExr(OsFilePath const& path, IxTile const& vectors) {
    IxReadGuard const in(vectors);
    GeRectangle<int> const& r = vectors.getPixelRegion();
    IxTile const tile =
        makeTile(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16), FILE_RECT, [&](int x, int y) {
            Rgba const v = IxPixelUtil::getPixelColor(in, r.x1 + x, r.y1 + y);
            return Rgba{normalized(v.r), normalized(v.g), 0.5f, 1.0f};
        });
    FfImageWriteUtil::writeTile(path, tile);
}

using VectorWriter = void (*)(OsFilePath const&, IxTile const&);

// The first pixel where an image read differs by more than the tolerance
// from what the source image's pixel should become (expectedOf), as text;
// empty when none does. A tolerance of 0 asks for the same values to the bit.
std::string firstDifferenceFrom(IxTile const& read, IxTile const& source, Rgba (*expectedOf)(Rgba const&),
                                float tolerance) {
    if (read.getPixelRegion() != source.getPixelRegion())
        return "regions " + read.getPixelRegion().dump() + " and " + source.getPixelRegion().dump();
    IxReadGuard const readGuard(read);
    IxReadGuard const sourceGuard(source);
    GeRectangle<int> const& r = read.getPixelRegion();
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x) {
            Rgba const shown = IxPixelUtil::getPixelColor(readGuard, x, y);
            Rgba const expected = expectedOf(IxPixelUtil::getPixelColor(sourceGuard, x, y));
            if (!near(shown, expected, tolerance)) {
                std::ostringstream text;
                text << "(" << x << ", " << y << "): " << shown << " against " << expected;
                return text.str();
            }
        }
    return {};
}

class VectorsFromFiles : public TestHelpers::TempDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    // The plate as files, read by a reader, and the Motio chain over it.
    void SetUp() override {
        TempDirTest::SetUp();
        for (int f = 0; f < NB_FRAMES; ++f) {
            TextureImage const frame = plateFrame(f);
            FfImageWriteUtil::writeTile(framePath("plate", f, "exr"),
                                        makeTile(RGBA32, FILE_RECT, [&](int x, int y) {
                                            float const v = frame.at(x, y);
                                            return Rgba{v, v, v, 1.0f};
                                        }));
        }
        _plate = reader("Plate", "plate.[#].exr", {});
        PxStrongHndl<BtPxMotioNode> const motio = BtMotioTool::createPxNode(_plate, 0);
        for (auto type : {FORWARD, BACKWARD})
            _computed[type] = BtPxMotioOutputNode<BtPxMotioNode>::create(motio, type);
    }

    OsFilePath framePath(std::string const& name, int frame, std::string const& extension) const {
        char number[16];
        std::snprintf(number, sizeof number, "%04d", frame);
        return path(name + "." + number + "." + extension);
    }

    // The output of a new "Image Reader" over the files of the pattern,
    // reading vectors as `info` says, at the depth given (the file's when
    // none).
    PxStrongHndl<PxImageProtocol const> reader(std::string const& name, std::string const& pattern,
                                               CoMotionVectorInfo const& info, unsigned depth = 0) {
        RCShdPtr<PiNode> const node = _graph->createNode("Image Reader", name);
        auto& controller = *node->getInterface<BtImageReaderController>();
        EXPECT_TRUE(controller.setSequencePath(path(pattern).toString())) << controller.getErrorString();
        controller.setMotionVectorInfo(info);
        if (depth != 0)
            controller.setDepth(depth);
        _readDepth = controller.getDepth();
        return PxStrongHndl<PxImageProtocol const>(node->getOutput("Output Image", true)->getProcNode());
    }

    // The computed vectors of a type at a frame, whole at full size.
    IxTile computed(BtMotioTypes::VectorType type, int frame) const {
        return evaluateFrame(_computed[type], {frame / RATE, 0});
    }

    // The computed vectors of a type, a file per frame that has them, named
    // name.####.extension; returns the sequence's pattern.
    std::string writeComputed(std::string const& name, BtMotioTypes::VectorType type, VectorWriter write,
                              std::string const& extension) {
        for (int f = firstFrameOf(type); f < firstFrameOf(type) + NB_FRAMES - 1; ++f)
            write(framePath(name, f, extension), computed(type, f));
        return name + ".[#]." + extension;
    }

    RCShdPtr<PiGraph> _graph{new PiGraph};
    PxStrongHndl<PxImageProtocol const> _plate;
    std::array<PxStrongHndl<PxImageProtocol const>, BtMotioTypes::NB_VECTOR_TYPES> _computed;
    unsigned _readDepth = 0;
};

CoMotionVectorInfo const ABSOLUTE_VECTORS{CoMotionVectorInfo::HAS_VECTORS, CoMotionVectorInfo::ABSOLUTE};
CoMotionVectorInfo const NORMALIZED_VECTORS{CoMotionVectorInfo::HAS_VECTORS, CoMotionVectorInfo::NORMALIZED,
                                            MAX_DISPLACEMENT};

} // namespace

TEST_F(VectorsFromFiles, TheComputedVectorsAreTheMotion) {
    // Otherwise the comparisons below could hold between images of nothing.
    Rgba const forward = pixelAt(computed(FORWARD, 0), 0, 0);
    Rgba const backward = pixelAt(computed(BACKWARD, 2), 0, 0);
    EXPECT_NEAR(forward.r, STEP_X, 0.25);
    EXPECT_NEAR(forward.g, STEP_Y, 0.25);
    EXPECT_NEAR(backward.r, -STEP_X, 0.25);
    EXPECT_NEAR(backward.g, -STEP_Y, 0.25);
}

TEST_F(VectorsFromFiles, AReaderShowsTheVectorsOfItsFilesInPixels) {
    struct Case {
        BtMotioTypes::VectorType type;
        unsigned depth; // 0: the file's
        unsigned expectedDepth;
        float tolerance;
    } const cases[] = {
        {FORWARD, 0, IxPixelFormat::FLOAT32, 0.0f},
        {BACKWARD, 0, IxPixelFormat::FLOAT32, 0.0f},
        {BACKWARD, IxPixelFormat::FLOAT32, IxPixelFormat::FLOAT32, 0.0f},
        // Halves keep 11 bits: a vector below 8 pixels within 2^-8.
        {FORWARD, IxPixelFormat::FLOAT16, IxPixelFormat::FLOAT16, 1.0f / 256.0f},
    };
    for (auto type : {FORWARD, BACKWARD})
        writeComputed(nameOf(type), type, writeVectorsExr, "exr");
    int n = 0;
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << nameOf(c.type) << " depth " << c.depth);
        auto const read = reader("R" + std::to_string(n++), std::string(nameOf(c.type)) + ".[#].exr",
                                 ABSOLUTE_VECTORS, c.depth);
        EXPECT_EQ(_readDepth, c.expectedDepth);
        for (int f = firstFrameOf(c.type); f < firstFrameOf(c.type) + NB_FRAMES - 1; ++f) {
            SCOPED_TRACE(testing::Message() << "frame " << f);
            IxTile const shown = evaluateFrame(read, {f / RATE, 0});
            EXPECT_EQ(firstDifferenceFrom(shown, computed(c.type, f), asVector, c.tolerance), "");
        }
    }
}

TEST_F(VectorsFromFiles, AFrameWarpedAlongVectorsFromFilesIsTheOneWarpedAlongComputedOnes) {
    auto const fwd = reader("F", writeComputed("fwd", FORWARD, writeVectorsExr, "exr"), ABSOLUTE_VECTORS);
    auto const bwd = reader("B", writeComputed("bwd", BACKWARD, writeVectorsExr, "exr"), ABSOLUTE_VECTORS);
    struct Case {
        int frame;
        int offset;
    } const cases[] = {{0, 1}, {1, 1}, {1, -1}, {2, -1}};
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "frame " << c.frame << " offset " << c.offset);
        FrameAt const at{c.frame / RATE, 0};
        IxTile const fromFiles =
            evaluateFrame(BtMotionControllerBase::createWarpedFrameNodes(_plate, fwd, bwd, c.offset), at);
        IxTile const fromComputed =
            evaluateFrame(BtMotionControllerBase::createWarpedFrameNodes(_plate, _computed[FORWARD],
                                                                         _computed[BACKWARD], c.offset),
                          at);
        ASSERT_TRUE(fromFiles.isValid());
        EXPECT_EQ(firstDifference(fromFiles, fromComputed, 0.0f), "");
        // The neighbour brought back is this frame, inside.
        IxTile const current = evaluateFrame(_plate, at);
        EXPECT_TRUE(near(pixelAt(fromFiles, 0, 0), pixelAt(current, 0, 0), 0.05f));
    }
}

TEST_F(VectorsFromFiles, NormalizedFilesGiveTheVectorsWithinTheirStep) {
    struct Case {
        char const* what;
        VectorWriter write;
        char const* extension;
        CoMotionVectorInfo info;
        // What the reader shows, from the computed vector.
        Rgba (*expected)(Rgba const&);
        float tolerance;
    } const cases[] = {
        // Half a step of 65535 over 2 * max pixels, and the float's own rounding.
        {"16-bit PNG", writeNormalizedPng, "png", NORMALIZED_VECTORS, asVector,
         MAX_DISPLACEMENT / 65535.0f + 1e-5f},
        // Halves between 0.5 and 1 are 2^-11 apart: half of that over 2 * max pixels.
        {"half EXR", writeNormalizedHalfExr, "exr", NORMALIZED_VECTORS, asVector,
         MAX_DISPLACEMENT / 2048.0f + 1e-5f},
        // Without the status the reader shows what is stored.
        {"16-bit PNG as an image",
         writeNormalizedPng,
         "png",
         {},
         [](Rgba const& v) {
             return Rgba{normalized(v.r), normalized(v.g), 0.5f, 1.0f};
         },
         0.5f / 65535.0f + 1e-6f},
    };
    int n = 0;
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        std::string const pattern = writeComputed("n" + std::to_string(n), FORWARD, c.write, c.extension);
        auto const read = reader("N" + std::to_string(n++), pattern, c.info, IxPixelFormat::FLOAT32);
        for (int f = 0; f < NB_FRAMES - 1; ++f) {
            SCOPED_TRACE(testing::Message() << "frame " << f);
            EXPECT_EQ(firstDifferenceFrom(evaluateFrame(read, {f / RATE, 0}), computed(FORWARD, f),
                                          c.expected, c.tolerance),
                      "");
        }
    }
}

// Two float channels named "R" and "G", as `qv motio` writes them: red and
// green, not grey and alpha, so the vectors come back whole.
TEST_F(VectorsFromFiles, TwoChannelFilesAsQvMotioWritesThemAreVectorsToo) {
    auto const read = reader("R", writeComputed("rg", FORWARD, writeTwoChannelExr, "exr"), ABSOLUTE_VECTORS);
    for (int f = 0; f < NB_FRAMES - 1; ++f) {
        SCOPED_TRACE(testing::Message() << "frame " << f);
        EXPECT_EQ(
            firstDifferenceFrom(evaluateFrame(read, {f / RATE, 0}), computed(FORWARD, f), asVector, 0.0f),
            "");
    }
}
