// The texture's reads of tiles it already holds: pixels of RGBA floats read
// in place, other formats converted, every lookup after the first the same
// as a lookup that starts from nothing, and a row of lookups the same as
// lookups one by one.
#include "ixPixelUtil.h"
#include "pxConfig.h"
#include "pxImageTestUtil.h"
#include "pxImageTexture.h"
#include "pxTestUtil.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <vector>

using namespace Qv;
using PxTest::RampImageNode;

namespace {

struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};

// RGB half floats over 40 by 20 pixels: pixel (x, y) is (x, y, 0.5), which
// the texture reads as (x, y, 0.5, 1); every value is exact in halves.
class HalfRampNode : public PxImageProtocol {
public:
    explicit HalfRampNode(PxNode::Init const& init)
        : PxNode(init), PxImageProtocol(init),
          _format(PxImageFormat(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16), Rational(24, 1)),
                  PxValidityInterval::FULL) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(pixelizedToNominal(PIXELS, 1.0, 1.0), PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        GeRectangle<int> const region = PIXELS.getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(FILL), PxValidityInterval::FULL);
        IxTile const tile = allocateImageBuffer(context, FILL, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, {float(x), float(y), 0.5f, 1.0f});
        return PxImageResult(tile, PxValidityInterval::FULL);
    }

    static constexpr GeRectangle<int> PIXELS{0, 40, 0, 20};
    static constexpr CoRgbaColorTyped<float> FILL{0.25f, 0.5f, 0.75f, 0.0f};

private:
    PxResult<PxImageFormat> _format;
};

// Whole positions give pixels, so that (x, y) reads pixel (x, y).
SdTextureParams pixelParams(int filter, bool clamp) {
    SdTextureParams params;
    params.textureTransform.linear = GeLinearMatrix2<double>::scaling(1.0 / 40, 1.0 / 20);
    params.textureTransform.translation = {0.5 / 40, 0.5 / 20};
    params.filter = filter;
    params.clampX = params.clampY = clamp;
    return params;
}

} // namespace

// A converted tile reads as the pixels it holds: between them the bilinear
// mix, across a tile border too; beyond them the fill or the edge.
TEST(PxImageTexture, ReadsTilesOfOtherFormatsConverted) {
    TileSize const size(16);
    auto const ramp = PxTest::makeNode<HalfRampNode>();
    PxNodePtr<PxImageProtocol const> const held(ramp);
    PxTest::runAsRequest([&] {
        PxUPtr<PxImageProtocol const> const node(held);
        struct Case {
            int filter;
            bool clamp;
            double x, y;
            CoRgbaColorTyped<double> expected;
        };
        for (Case const& c : {
                 Case{SdTextureParams::BILINEAR, false, 17, 3, {17, 3, 0.5, 1}},
                 Case{SdTextureParams::BILINEAR, false, 17.25, 3.75, {17.25, 3.75, 0.5, 1}},
                 Case{SdTextureParams::BILINEAR, false, 15.5, 15.5, {15.5, 15.5, 0.5, 1}}, // four tiles
                 Case{SdTextureParams::BILINEAR, false, -0.5, 2, {0.125, 1.25, 0.625, 0.5}},
                 Case{SdTextureParams::BILINEAR, true, -0.5, 2, {0, 2, 0.5, 1}},
                 Case{SdTextureParams::NEAREST, false, 17.4, 3.6, {17, 4, 0.5, 1}},
                 Case{SdTextureParams::NEAREST, false, 40, 3, {0.25, 0.5, 0.75, 0}},
             }) {
            PxImageTexture texture(node, PxImageContext(0.0, {0, 0}), pixelParams(c.filter, c.clamp));
            // Twice: the second reads the tiles the first fetched.
            for (int pass = 0; pass < 2; ++pass) {
                CoRgbaColorTyped<double> const got = texture.lookup(c.x, c.y);
                EXPECT_DOUBLE_EQ(got.r, c.expected.r) << c.x << "," << c.y << " pass " << pass;
                EXPECT_DOUBLE_EQ(got.g, c.expected.g) << c.x << "," << c.y << " pass " << pass;
                EXPECT_DOUBLE_EQ(got.b, c.expected.b) << c.x << "," << c.y << " pass " << pass;
                EXPECT_DOUBLE_EQ(got.a, c.expected.a) << c.x << "," << c.y << " pass " << pass;
            }
        }
    });
}

// The ramps, filters and clamps the sweeps below run on, in tiles of 16; each
// case runs as a request with its node and texture settings.
struct SweepCase {
    bool halves;
    int filter;
    bool clamp;
};

template <class Fn>
void forEachSweepCase(std::initializer_list<SweepCase> cases, Fn&& fn) {
    TileSize const size(16);
    PxNodePtr<PxImageProtocol const> const floats(
        PxTest::makeNode<RampImageNode>(GeRectangle<float>{0, 40, 0, 20}));
    PxNodePtr<PxImageProtocol const> const halves(PxTest::makeNode<HalfRampNode>());
    for (SweepCase const& c : cases)
        PxTest::runAsRequest([&] {
            PxUPtr<PxImageProtocol const> const node(c.halves ? halves : floats);
            fn(node, pixelParams(c.filter, c.clamp), c);
        });
}

// Sweeping positions in rows, within tiles, across their borders and past
// the pixels, a texture that holds tiles from earlier lookups gives exactly
// what a new texture gives for that one lookup.
TEST(PxImageTexture, LookupsFromHeldTilesEqualFirstLookups) {
    forEachSweepCase(
        {{false, SdTextureParams::BILINEAR, false},
         {false, SdTextureParams::BILINEAR, true},
         {false, SdTextureParams::NEAREST, false},
         {true, SdTextureParams::BILINEAR, false},
         {true, SdTextureParams::NEAREST, true}},
        [](PxUPtr<PxImageProtocol const> const& node, SdTextureParams const& params, SweepCase const& c) {
            PxImageContext const context(0.0, {0, 0});
            PxImageTexture held(node, context, params);
            int mismatches = 0;
            for (double y = -2.5; y < 22; y += 0.625)
                for (double x = -2.5; x < 42; x += 0.375) {
                    CoRgbaColorTyped<double> const got = held.lookup(x, y);
                    CoRgbaColorTyped<double> const first = PxImageTexture(node, context, params).lookup(x, y);
                    if (got != first) {
                        ADD_FAILURE()
                            << "at " << x << "," << y << " filter " << c.filter << " clamp " << c.clamp
                            << ": " << got.r << " " << got.g << " " << got.b << " " << got.a << " instead of "
                            << first.r << " " << first.g << " " << first.b << " " << first.a;
                        if (++mismatches > 5)
                            return;
                    }
                }
        });
}

// Rows of positions - two by two within a tile, pairs astride tile borders
// and the image's edge, one of a pair far off, odd lengths -
// give in each colour the bits of lookup() rounded to floats.
TEST(PxImageTexture, RowLookupsEqualLookupsOneByOne) {
    forEachSweepCase(
        {{false, SdTextureParams::BILINEAR, false},
         {false, SdTextureParams::BILINEAR, true},
         {false, SdTextureParams::NEAREST, false},
         {true, SdTextureParams::BILINEAR, false}},
        [](PxUPtr<PxImageProtocol const> const& node, SdTextureParams const& params, SweepCase const& c) {
            PxImageContext const context(0.0, {0, 0});
            std::vector<double> positions;
            // Smooth rows with irregular steps, as warps read.
            for (double y = -2.3; y < 22; y += 0.7)
                for (double x = -2.6; x < 42; x += 0.45)
                    positions.insert(positions.end(), {x + 0.3 * std::sin(y), y + 0.2 * std::cos(x)});
            // Pairs where one position cannot take the short way.
            for (double odd : {-1e6, 1e6, 15.0, 15.5, 16.0, 19.0, 38.999, 39.5, -0.5, -1.0})
                positions.insert(positions.end(), {3.25, 4.5, odd, 6.75, 7.5, odd, 12.125, 9.875});
            int const count = int(positions.size() / 2);
            for (int length : {count, count - 1, 1}) {
                PxImageTexture byRow(node, context, params);
                PxImageTexture oneByOne(node, context, params);
                std::vector<CoRgbaColorTyped<float>> row(std::size_t(length) + 1, {-1, -1, -1, -1});
                byRow.lookupRow(positions.data(), length, row.data());
                EXPECT_EQ(std::bit_cast<std::uint32_t>(row[std::size_t(length)].r),
                          std::bit_cast<std::uint32_t>(-1.0f))
                    << "wrote past the row";
                int mismatches = 0;
                for (int i = 0; i < length && mismatches < 5; ++i) {
                    CoRgbaColorTyped<double> const one =
                        oneByOne.lookup(positions[2 * i], positions[2 * i + 1]);
                    float const expected[] = {float(one.r), float(one.g), float(one.b), float(one.a)};
                    float const got[] = {row[i].r, row[i].g, row[i].b, row[i].a};
                    for (int k = 0; k < 4; ++k)
                        if (std::bit_cast<std::uint32_t>(got[k]) !=
                            std::bit_cast<std::uint32_t>(expected[k])) {
                            ADD_FAILURE()
                                << "at " << positions[2 * i] << "," << positions[2 * i + 1] << " component "
                                << k << ": " << got[k] << " instead of " << expected[k] << " (filter "
                                << c.filter << ", clamp " << c.clamp << ")";
                            ++mismatches;
                        }
                }
            }
        });
}
