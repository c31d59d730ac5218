// Image primitives on one 4096 x 2160 RGBA frame, single-threaded, each
// against memcpy of the bytes it reads and against the same operation of
// OpenImageIO's ImageBufAlgo (one thread too):
//   format_u8    FLOAT32 to UINT8        (ImageBufAlgo::copy to uint8)
//   format_half  FLOAT32 to FLOAT16      (ImageBufAlgo::copy to half)
//   add          FLOAT32 a + b           (ImageBufAlgo::add)
//   lanczos_half Lanczos3 to half width  (ImageBufAlgo::resize, "lanczos3")
// OpenImageIO works on our tiles' own memory, so both read and write the
// same bytes. Prints `ratio images.<op>.memcpy <x>` and `ratio images.<op>.oiio <x>`.
#include "benchTiming.h"
#include "ipArithmetic.h"
#include "ipAspectChange.h"
#include "ipFormatChange.h"
#include "ixReadGuard.h"
#include "ixTile.h"
#include "ixWriteGuard.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

namespace {

using namespace Qv;
namespace OIIO = OIIO_NAMESPACE;

constexpr int WIDTH = 4096;
constexpr int HEIGHT = 2160;
constexpr int REPETITIONS = 11;

IxPixelFormat rgba(IxPixelFormat::Depth depth) {
    return IxPixelFormat(IxPixelFormat::RGBA, depth);
}

OIIO::TypeDesc oiioType(IxPixelFormat::Depth depth) {
    switch (depth) {
    case IxPixelFormat::UINT8:
        return OIIO::TypeDesc::UINT8;
    case IxPixelFormat::FLOAT16:
        return OIIO::TypeDesc::HALF;
    default:
        return OIIO::TypeDesc::FLOAT;
    }
}

// An ImageBuf over a tile's pixels, with the tile's line stride.
OIIO::ImageBuf wrap(IxTileGuard const& guard, std::byte* pixels) {
    GeRectangle<int> const& r = guard.getPixelRegion();
    OIIO::ImageSpec spec(r.getWidth(), r.getHeight(), 4, oiioType(guard.getPixelFormat().getDepth()));
    return OIIO::ImageBuf(spec, pixels, OIIO::AutoStride, static_cast<OIIO::stride_t>(guard.getRowBytes()));
}
OIIO::ImageBuf wrap(IxWriteGuard const& guard) {
    return wrap(guard, guard.getLine(guard.getPixelRegion().y1));
}
OIIO::ImageBuf wrap(IxReadGuard const& guard) {
    return wrap(guard, const_cast<std::byte*>(guard.getLine(guard.getPixelRegion().y1)));
}

// A frame of values in [0, 1], not a pattern the conversions could shortcut.
IxTile makeFrame(unsigned seed) {
    IxTile tile(rgba(IxPixelFormat::FLOAT32), {0, WIDTH, 0, HEIGHT});
    IxWriteGuard const guard(tile);
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    for (int y = 0; y < HEIGHT; ++y) {
        float* line = guard.getLineAs<float>(y);
        for (int i = 0; i < 4 * WIDTH; ++i)
            line[i] = value(random);
    }
    return tile;
}

void report(char const* op, double ours, double copy, double oiio) {
    std::printf("images.%s: ours %.2f ms, memcpy %.2f ms, oiio %.2f ms\n", op, ours * 1e3, copy * 1e3,
                oiio * 1e3);
    std::printf("ratio images.%s.memcpy %.3f\n", op, ours / copy);
    std::printf("ratio images.%s.oiio %.3f\n", op, ours / oiio);
}

// memcpy of the bytes of the given frames into a scratch buffer.
std::function<void()> copyOf(std::vector<IxTile> const& frames, std::vector<std::byte>& scratch) {
    return [&frames, &scratch] {
        for (IxTile const& frame : frames) {
            IxReadGuard const guard(frame);
            std::size_t const size = frame.getBufferSize();
            if (scratch.size() < size)
                scratch.resize(size);
            std::memcpy(scratch.data(), guard.getLine(0), size);
            QvBench::keep(scratch[size / 2]);
        }
    };
}

void benchFormatChange(char const* op, IxTile const& src, IxPixelFormat::Depth depth,
                       std::vector<std::byte>& scratch) {
    IxTile const dst(rgba(depth), src.getPixelRegion());
    IxTile const oiioDst(rgba(depth), src.getPixelRegion());
    std::vector<IxTile> const reads{src};
    std::vector<double> const t = QvBench::mediansInTurns(
        {[&] { ipFormatChange(IxWriteGuard(dst), IxReadGuard(src)); }, copyOf(reads, scratch),
         [&] {
             IxWriteGuard const out(oiioDst);
             OIIO::ImageBuf dstBuf = wrap(out);
             OIIO::ImageBufAlgo::copy(dstBuf, wrap(IxReadGuard(src)), oiioType(depth), {}, 1);
         }},
        REPETITIONS);
    report(op, t[0], t[1], t[2]);
}

void benchAdd(IxTile const& a, IxTile const& b, std::vector<std::byte>& scratch) {
    IxTile const dst(rgba(IxPixelFormat::FLOAT32), a.getPixelRegion());
    std::vector<IxTile> const reads{a, b};
    std::vector<double> const t = QvBench::mediansInTurns(
        {[&] { ipAdd(IxWriteGuard(dst), IxReadGuard(a), IxReadGuard(b)); }, copyOf(reads, scratch),
         [&] {
             IxWriteGuard const out(dst);
             OIIO::ImageBuf dstBuf = wrap(out);
             OIIO::ImageBufAlgo::add(dstBuf, wrap(IxReadGuard(a)), wrap(IxReadGuard(b)), {}, 1);
         }},
        REPETITIONS);
    report("add", t[0], t[1], t[2]);
}

void benchLanczos(IxTile const& src, std::vector<std::byte>& scratch) {
    GeRectangle<int> const half{0, WIDTH / 2, 0, HEIGHT};
    IxTile const dst(rgba(IxPixelFormat::FLOAT32), half);
    IpFilters::Filter const filter = IpFilters::Lanczos3.scale(0.5f, 1.0f);
    std::vector<IxTile> const reads{src};
    std::vector<double> const t = QvBench::mediansInTurns(
        {[&] { ipAspectChange(IxWriteGuard(dst), {IxReadGuard(src)}, filter); }, copyOf(reads, scratch),
         [&] {
             IxWriteGuard const out(dst);
             OIIO::ImageBuf dstBuf = wrap(out);
             OIIO::ImageBufAlgo::resize(dstBuf, wrap(IxReadGuard(src)), "lanczos3", 0.0f, {}, 1);
         }},
        REPETITIONS);
    report("lanczos_half", t[0], t[1], t[2]);
}

} // namespace

int main() {
    OIIO::attribute("threads", 1);
    IxTile const a = makeFrame(1);
    IxTile const b = makeFrame(2);
    std::vector<std::byte> scratch;
    benchFormatChange("format_u8", a, IxPixelFormat::UINT8, scratch);
    benchFormatChange("format_half", a, IxPixelFormat::FLOAT16, scratch);
    benchAdd(a, b, scratch);
    benchLanczos(a, scratch);
    return 0;
}
