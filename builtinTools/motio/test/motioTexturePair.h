#pragma once
// Pairs of frames whose motion is known exactly, for measuring optical flow:
// a band-limited texture (a sum of plane waves of random direction and phase
// from a fixed seed, 1/96 to 1/5 cycles a pixel) sampled at each pixel of
// frame 0 and, in frame 1, at the position the motion brings there. An affine
// motion turns each wave into another wave, so both frames are sums of waves
// and their proxy scales are exact too: made as the image reader makes them,
// each level from the one below by the 8-tap Lanczos-2 halving filter, a
// wave comes out as the same wave at the pixel's centre, attenuated by the
// filter's response at each level (the coarse levels alias no more than
// footage does).
// Plain C++ only, so that the benchmarks share it with the tests.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Qv::MotioTest {

// T(p) = scale * R(degrees) (p - c) + c + shift, with c the frame's centre:
// what is at p in frame 0 is at T(p) in frame 1. Pixel (x, y) stands at
// p = (x + 0.5, y + 0.5), so that the centre of a W by H frame is (W/2, H/2).
struct TextureMotion {
    double shiftX = 0.0;
    double shiftY = 0.0;
    double degrees = 0.0;
    double scale = 1.0;
};

// The luminance standard deviations of the pairs: a well exposed camera frame
// and a flat, low-contrast one.
inline constexpr double CAMERA_STD = 0.15;
inline constexpr double CAMERA_LOW_STD = 0.05;

// The error leaves out pixels nearer an edge than this, and those whose true
// match in the other frame is.
inline constexpr double INTERIOR_MARGIN = 16.0;

struct TextureFlow {
    double x = 0.0;
    double y = 0.0;
};

// Luminance over a pixel rectangle, row by row.
struct TextureImage {
    int x1 = 0;
    int y1 = 0;
    int width = 0;
    int height = 0;
    std::vector<float> values;

    float at(int x, int y) const {
        return values[std::size_t(y - y1) * std::size_t(width) + std::size_t(x - x1)];
    }
};

class TexturePair {
public:
    static constexpr int NB_WAVES = 40;
    static constexpr double LOWEST_FREQUENCY = 1.0 / 96.0; // cycles a pixel
    static constexpr double HIGHEST_FREQUENCY = 1.0 / 5.0;
    static constexpr std::uint64_t DEFAULT_SEED = 20261125;

    // Frames of width by height pixels whose luminance varies around 0.5 with
    // the standard deviation `stdDev` (that of the unclipped texture over an
    // unbounded plane), clipped to 0-1.
    TexturePair(int width, int height, TextureMotion const& motion, double stdDev,
                std::uint64_t seed = DEFAULT_SEED)
        : _width(width), _height(height), _motion(motion) {
        if (width <= 0 || height <= 0 || !(motion.scale > 0.0) || !(stdDev >= 0.0))
            throw std::invalid_argument("TexturePair: needs a positive size and scale");
        std::mt19937_64 random(seed);
        // Bits to [0, 1) by hand: the distributions of <random> differ between libraries.
        auto uniform = [&random] { return double(random() >> 11) * 0x1.0p-53; };
        double const twoPi = 2.0 * std::numbers::pi;
        // Each wave has amplitude 1, so variance 1/2; the gain gives the deviation asked for.
        _gain = stdDev / std::sqrt(0.5 * NB_WAVES);

        // Frame 1 at p is frame 0 at T^-1(p) = M p + b, with M = R(-theta) / s and
        // b = c - M (c + shift): the wave k.q + phase becomes (M^T k).p + k.b + phase.
        double const theta = _motion.degrees * std::numbers::pi / 180.0;
        double const cosT = std::cos(theta);
        double const sinT = std::sin(theta);
        double const s = _motion.scale;
        // M = [cosT sinT; -sinT cosT] / s
        double const m00 = cosT / s, m01 = sinT / s, m10 = -sinT / s, m11 = cosT / s;
        double const cx = 0.5 * _width, cy = 0.5 * _height;
        double const tx = cx + _motion.shiftX, ty = cy + _motion.shiftY;
        double const bx = cx - (m00 * tx + m01 * ty);
        double const by = cy - (m10 * tx + m11 * ty);
        for (int i = 0; i < NB_WAVES; ++i) {
            double const frequency =
                LOWEST_FREQUENCY * std::pow(HIGHEST_FREQUENCY / LOWEST_FREQUENCY, uniform());
            double const direction = std::numbers::pi * uniform();
            double const phase = twoPi * uniform();
            Wave const wave{twoPi * frequency * std::cos(direction), twoPi * frequency * std::sin(direction),
                            phase};
            _waves[0].push_back(wave);
            _waves[1].push_back({m00 * wave.kx + m10 * wave.ky, m01 * wave.kx + m11 * wave.ky,
                                 wave.phase + wave.kx * bx + wave.ky * by});
        }
    }

    int getWidth() const { return _width; }
    int getHeight() const { return _height; }
    TextureMotion const& getMotion() const { return _motion; }

    // Frame 0 or 1 over pixels [x1, x2) x [y1, y2) at proxy scale `proxy`:
    // pixel (x, y) there is the halving filter's value over columns
    // 2x - 3 .. 2x + 4 and rows 2y - 3 .. 2y + 4 of the level below, centred
    // on (2x + 1, 2y + 1) (before clipping, and as if the frame went on).
    TextureImage render(int frame, int proxy, int x1, int x2, int y1, int y2) const {
        if ((frame != 0 && frame != 1) || proxy < 0 || proxy > 30 || x2 < x1 || y2 < y1)
            throw std::invalid_argument("TexturePair::render: frame 0 or 1, a proxy scale and a rectangle");
        std::vector<Wave> const& waves = _waves[frame];
        double const n = double(1 << proxy);
        TextureImage image{x1, y1, x2 - x1, y2 - y1, {}};
        image.values.resize(std::size_t(image.width) * std::size_t(image.height));

        // cos(kx X + ky Y + phase) = cos(kx X + phase) cos(ky Y) - sin(kx X + phase) sin(ky Y):
        // the column factors once per frame, the row factors once per row.
        std::vector<double> columnCos(std::size_t(image.width) * NB_WAVES);
        std::vector<double> columnSin(columnCos.size());
        std::vector<double> weight(NB_WAVES);
        for (int w = 0; w < NB_WAVES; ++w)
            weight[w] = _gain * halvingResponse(waves[w].kx, proxy) * halvingResponse(waves[w].ky, proxy);
        for (int x = x1; x < x2; ++x)
            for (int w = 0; w < NB_WAVES; ++w) {
                double const angle = waves[w].kx * ((x + 0.5) * n) + waves[w].phase;
                columnCos[std::size_t(x - x1) * NB_WAVES + w] = std::cos(angle);
                columnSin[std::size_t(x - x1) * NB_WAVES + w] = std::sin(angle);
            }
        std::vector<double> rowCos(NB_WAVES);
        std::vector<double> rowSin(NB_WAVES);
        for (int y = y1; y < y2; ++y) {
            for (int w = 0; w < NB_WAVES; ++w) {
                double const angle = waves[w].ky * ((y + 0.5) * n);
                rowCos[w] = weight[w] * std::cos(angle);
                rowSin[w] = weight[w] * std::sin(angle);
            }
            float* out = &image.values[std::size_t(y - y1) * std::size_t(image.width)];
            for (int x = 0; x < image.width; ++x) {
                double const* c = &columnCos[std::size_t(x) * NB_WAVES];
                double const* s = &columnSin[std::size_t(x) * NB_WAVES];
                double sum = 0.5;
                for (int w = 0; w < NB_WAVES; ++w)
                    sum += c[w] * rowCos[w] - s[w] * rowSin[w];
                out[x] = float(std::clamp(sum, 0.0, 1.0));
            }
        }
        return image;
    }

    // A whole frame at proxy 0.
    TextureImage render(int frame) const { return render(frame, 0, 0, _width, 0, _height); }

    // The true motion of pixel (x, y) at proxy 0: frame 0 towards frame 1,
    // T(p) - p, and frame 1 towards frame 0, T^-1(p) - p.
    TextureFlow forwardFlow(int x, int y) const {
        auto const [tx, ty] = apply(x + 0.5, y + 0.5, false);
        return {tx - (x + 0.5), ty - (y + 0.5)};
    }
    TextureFlow backwardFlow(int x, int y) const {
        auto const [tx, ty] = apply(x + 0.5, y + 0.5, true);
        return {tx - (x + 0.5), ty - (y + 0.5)};
    }
    // Forward flow for frame 0, backward for frame 1.
    TextureFlow trueFlow(int frame, int x, int y) const {
        return frame == 0 ? forwardFlow(x, y) : backwardFlow(x, y);
    }

    // Whether pixel (x, y) of `frame` and its true match in the other frame
    // both lie INTERIOR_MARGIN or more inside the frame.
    bool isInterior(int frame, int x, int y) const {
        TextureFlow const flow = trueFlow(frame, x, y);
        return isInside(x + 0.5, y + 0.5) && isInside(x + 0.5 + flow.x, y + 0.5 + flow.y);
    }

    // The mean end-point error over the interior of `frame` of the vectors
    // flowAt(x, y) (a TextureFlow: forward vectors of frame 0, backward ones
    // of frame 1) against the true flow.
    template <class FlowAt>
    double meanEndPointError(int frame, FlowAt const& flowAt) const {
        double sum = 0.0;
        long count = 0;
        for (int y = 0; y < _height; ++y)
            for (int x = 0; x < _width; ++x) {
                if (!isInterior(frame, x, y))
                    continue;
                TextureFlow const truth = trueFlow(frame, x, y);
                TextureFlow const found = flowAt(x, y);
                sum += std::hypot(found.x - truth.x, found.y - truth.y);
                ++count;
            }
        if (count == 0)
            throw std::invalid_argument("TexturePair::meanEndPointError: no interior pixel");
        return sum / double(count);
    }

private:
    // Angular frequencies (radians a pixel) and the phase at p = (0, 0).
    struct Wave {
        double kx;
        double ky;
        double phase;
    };

    static double sinc(double x) {
        return x == 0.0 ? 1.0 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
    }

    // What `proxy` halvings leave of a wave of angular frequency k (radians a
    // pixel at proxy 0), relative to its value at the pixel's centre. The
    // filter weighs the source pixel at distance d from the centre by
    // sinc(d / 2) sinc(d / 4), d = 0.5, 1.5, 2.5, 3.5 on either side, normalised.
    static double halvingResponse(double k, int proxy) {
        double response = 1.0;
        for (int level = 0; level < proxy; ++level) {
            double const kLevel = k * double(1 << level); // radians a pixel of that level
            double sum = 0.0, weights = 0.0;
            for (int tap = 0; tap < 4; ++tap) {
                double const d = tap + 0.5;
                double const weight = sinc(d / 2.0) * sinc(d / 4.0);
                sum += weight * std::cos(kLevel * d);
                weights += weight;
            }
            response *= sum / weights;
        }
        return response;
    }

    // T(p), or T^-1(p) when `inverse`.
    std::pair<double, double> apply(double px, double py, bool inverse) const {
        double const theta = (inverse ? -_motion.degrees : _motion.degrees) * std::numbers::pi / 180.0;
        double const cosT = std::cos(theta);
        double const sinT = std::sin(theta);
        double const cx = 0.5 * _width, cy = 0.5 * _height;
        if (!inverse) {
            double const dx = px - cx, dy = py - cy;
            return {_motion.scale * (cosT * dx - sinT * dy) + cx + _motion.shiftX,
                    _motion.scale * (sinT * dx + cosT * dy) + cy + _motion.shiftY};
        }
        double const dx = px - cx - _motion.shiftX, dy = py - cy - _motion.shiftY;
        return {(cosT * dx - sinT * dy) / _motion.scale + cx, (sinT * dx + cosT * dy) / _motion.scale + cy};
    }

    bool isInside(double px, double py) const {
        return px >= INTERIOR_MARGIN && px <= _width - INTERIOR_MARGIN && py >= INTERIOR_MARGIN &&
               py <= _height - INTERIOR_MARGIN;
    }

    int _width;
    int _height;
    TextureMotion _motion;
    double _gain = 0.0;
    std::vector<Wave> _waves[2];
};

} // namespace Qv::MotioTest
